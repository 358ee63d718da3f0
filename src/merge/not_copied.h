// Members that stay behind when their owner is copied.
#pragma once

/// A `Type` of which a copy begins anew: for what an object has learned about itself, such as where
/// it keeps things, and a copy would keep elsewhere. Moved as usual.
template <typename Type>
struct NotCopied : Type {
  NotCopied() = default;
  NotCopied(NotCopied const& /*other*/) : Type() {}
  NotCopied(NotCopied&&) = default;
  NotCopied& operator=(NotCopied const& other) {
    if (this != &other) {
      *this = NotCopied();
    }
    return *this;
  }
  NotCopied& operator=(NotCopied&&) = default;
  ~NotCopied() = default;
};
