/// A process-wide handler that a test exchanges and puts back.
#ifndef VQ_REPLACED_H
#define VQ_REPLACED_H

/// Calls `set` with `replacement` now and with what it returned at the end of the scope.
template <class Value>
class Replaced {
  public:
    Replaced(Value (*set)(Value), Value replacement) : set_(set), before_(set(replacement)) {}
    Replaced(const Replaced&) = delete;
    Replaced& operator=(const Replaced&) = delete;
    ~Replaced() { set_(before_); }

    Value Before() const { return before_; }

  private:
    Value (*set_)(Value);
    Value before_;
};

template <class Set, class Value>
Replaced(Set, Value) -> Replaced<Value>;

#endif
