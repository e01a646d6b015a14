/// \file
/// What the user may have meant by a name that there is not.
#ifndef VQTYPE_NEAREST_H
#define VQTYPE_NEAREST_H

#include <string>
#include <string_view>
#include <utility>

/// Finds among names the one that a mistyped name is nearest to: at most two letters inserted, dropped or replaced
/// away, and one where it has fewer than four. Case counts only between names that are equally near.
class NearestName {
  public:
    explicit NearestName(std::string_view given);

    /// Looks at `form`, one that the user may know `name` by.
    void Try(std::string_view form, std::string_view name);
    void Try(std::string_view name) { Try(name, name); }

    /// "; did you mean NAME?", or nothing when no name is near.
    std::string Question() const;

  private:
    // Without case and with it.
    using Distance = std::pair<std::size_t, std::size_t>;

    std::string given_, nearest_;
    Distance best_;
};

#endif
