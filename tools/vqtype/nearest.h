/// \file
/// What the user may have meant by a name that there is not.
#ifndef VQTYPE_NEAREST_H
#define VQTYPE_NEAREST_H

#include <string>
#include <string_view>

/// Finds among names the one that a mistyped name is nearest to: at most two letters inserted, dropped or replaced
/// away, or in another case.
class NearestName {
  public:
    explicit NearestName(std::string_view given) : given_(given) {}

    /// Looks at `form`, one that the user may know `name` by.
    void Try(std::string_view form, std::string_view name);
    void Try(std::string_view name) { Try(name, name); }

    /// "; did you mean NAME?", or nothing when no name is near.
    std::string Question() const;

  private:
    std::string given_, nearest_;
    std::size_t best_ = 3;
};

#endif
