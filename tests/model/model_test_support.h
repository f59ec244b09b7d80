// Helpers of the model tests: error assertions and printing of fields.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

#include "qr_config/config/model/field.h"
#include "qr_config/platform/qr_error.h"

// Asserts that `call` throws QRError(3, 256, code[, argument]).
template <typename Call>
void ExpectQRError(Call&& call, std::int32_t code, const std::string& argument = std::string()) {
  try {
    call();
    ADD_FAILURE() << "no QRError, expected code " << code;
  } catch (const QRError& error) {
    EXPECT_EQ(error.Component(), 3);
    EXPECT_EQ(error.Level(), 256);
    EXPECT_EQ(error.Code(), code);
    EXPECT_EQ(error.Argument().str(), argument);
  }
}

// A field's value as 'text' (String, UTF8String), 42 (Long), true or false (Bool), or none.
inline std::string ValueText(const ConfigManagerTypes::Field& field) {
  using Field = ConfigManagerTypes::Field;
  std::string text;
  orv_utf8string utf8;
  std::int32_t number = 0;
  bool flag = false;
  switch (field.ValueType()) {
    case Field::String:
      return field.Value(text), "'" + text + "'";
    case Field::UTF8String:
      return field.Value(utf8), "'" + utf8.str() + "'";
    case Field::Long:
      return field.Value(number), std::to_string(number);
    case Field::Bool:
      return field.Value(flag), flag ? "true" : "false";
    case Field::None:
      break;
  }
  return "none";
}

inline void PrintTo(const ConfigManagerTypes::Field& field, std::ostream* out) {
  *out << '"' << field.Name() << "\" tag " << field.ValueType();
}
