// Message templates with numbered placeholders.
#pragma once

#include <charconv>
#include <initializer_list>
#include <string>
#include <string_view>

/// Replaces each placeholder %N% of `text` by the N-th of `arguments`, counted from 1; all other
/// text is copied as it stands, a percent sign that opens no placeholder of theirs included.
[[nodiscard]] inline std::string FillTemplate(std::string_view text,
                                              std::initializer_list<std::string_view> arguments) {
  std::size_t length = text.size();
  for (const std::string_view argument : arguments) {
    length += argument.size();
  }
  std::string result;
  result.reserve(length);

  while (!text.empty()) {
    const std::size_t percent = text.find('%');
    result += text.substr(0, percent);
    if (percent == std::string_view::npos) {
      break;
    }
    text.remove_prefix(percent);

    std::size_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [closing, error] = std::from_chars(text.data() + 1, end, number);
    if (error == std::errc() && closing != end && *closing == '%' && number >= 1 &&
        number <= arguments.size()) {
      result += arguments.begin()[number - 1];
      text.remove_prefix(static_cast<std::size_t>(closing + 1 - text.data()));
    } else {
      result += text.front();
      text.remove_prefix(1);
    }
  }
  return result;
}
