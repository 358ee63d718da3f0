// Where an edited source goes.
#pragma once

#include <cstdint>
#include <span>

/// Takes what an EditWindow makes of a source, from its front to its end.
class EditOutput {
 public:
  /// Is shown each part of the source as it is read, before any of it is kept or dropped.
  virtual void Show(std::span<char const> /*window*/) {}

  /// Takes the next bytes that are kept.
  virtual void Keep(std::span<char const> bytes) = 0;

  /// Is told that the bytes [begin, end) of the source, 0-based, are left out. What is kept before
  /// them may come later.
  virtual void Drop(std::uint64_t begin, std::uint64_t end) = 0;

 protected:
  ~EditOutput() = default;
};
