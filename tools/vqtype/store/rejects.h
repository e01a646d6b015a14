/// \file
/// Rows of a file that did not fit: told, counted and kept.
#ifndef VQTYPE_STORE_REJECTS_H
#define VQTYPE_STORE_REJECTS_H

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace store {

class Rejects {
  public:
    static constexpr std::uint64_t ToldInFull = 20;  ///< all others are counted

    /// `tell` writes a line to standard error. With `kept` a file of that name is made, whose first line is `header`.
    /// Throws CommandError where that cannot be.
    Rejects(std::function<void(const std::string&)> tell, const std::optional<std::string>& kept,
            std::string_view header);

    /// A row that did not fit: its bytes, and a line that tells where it is and what was expected. Throws CommandError
    /// where it cannot be kept.
    void Add(std::string_view row, const std::string& fault);
    /// Hands what is kept to the system: it stays where the program is killed. Throws CommandError where that fails.
    void Flush();
    /// Tells how many were not told, and flushes.
    void Finish();

    std::uint64_t Count() const { return count_; }

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    void Keep(std::string_view row);
    void Check(bool isDone) const;

    std::function<void(const std::string&)> tell_;
    std::string name_;
    std::unique_ptr<std::FILE, Close> file_;
    std::uint64_t count_ = 0;
};

}  // namespace store

#endif
