#include "qr_config/config/readers/reader_frame.h"

#include <cstddef>

#include "qr_config/platform/qr_error.h"

namespace ReaderText {

void Assign(const unsigned short* text, std::string& out) {
  out.clear();
  if (text == nullptr) return;
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  AppendUtf16AsUtf8(text, length, out);
}

void Append(const unsigned short* text, int length, std::string& out) {
  if (text == nullptr || length <= 0) return;
  AppendUtf16AsUtf8(text, static_cast<std::size_t>(length), out);
}

void AppendCut(const unsigned short* text, int length, std::string& out) {
  if (text == nullptr || length <= 0) return;
  std::size_t kept = static_cast<std::size_t>(length);
  for (std::size_t i = kept; i > 0; --i) {
    if (text[i - 1] == u'\n' || text[i - 1] == u'\r') {
      kept = i - 1;
      break;
    }
  }
  AppendUtf16AsUtf8(text, kept, out);
}

}  // namespace ReaderText

ReaderFrame::~ReaderFrame() = default;

void ReaderFrame::BeginParse(const Poco::Path&) {}

void ReaderFrame::Parse(const Poco::Path& file) {
  BeginParse(file);
  try {
    XMLParser::Parse(file);
  } catch (const QRError& error) {
    std::int32_t code = 0;
    switch (error.Code()) {
      case QRErrorCode::ParseCannotRead:
        code = m_Codes.CannotRead;
        break;
      case QRErrorCode::ParseNotWellFormed:
        code = m_Codes.NotWellFormed;
        break;
      case QRErrorCode::ParseEncoding:
        code = m_Codes.Encoding;
        break;
      case QRErrorCode::ParseRefused:
        code = m_Codes.Refused;
        break;
      default:
        throw;
    }
    ThrowQRError(code, file.toString());
  }
}

ReaderFrame::Value ReaderFrame::Classify(const std::string& text) {
  bool isBoolean = false;
  bool booleanValue = false;
  bool isInteger = false;
  std::int32_t integerValue = 0;
  ParseParameter(text, isBoolean, booleanValue, isInteger, integerValue);
  Value value;
  if (isBoolean) {
    value.Type = Value::Bool;
    value.Boolean = booleanValue;
  } else if (isInteger) {
    value.Type = Value::Long;
    value.Integer = integerValue;
  }
  return value;
}

ReaderFrame::Field ReaderFrame::MakeField(const std::string& name, const std::string& text) {
  const Value value = Classify(text);
  switch (value.Type) {
    case Value::Bool:
      return Field(name, value.Boolean);
    case Value::Long:
      return Field(name, value.Integer);
    case Value::String:
      break;
  }
  return Field(name, text);
}

void ReaderFrame::StoreValue(Field& field, const std::string& text) {
  const Value value = Classify(text);
  switch (value.Type) {
    case Value::Bool:
      field.Update(value.Boolean);
      return;
    case Value::Long:
      field.Update(value.Integer);
      return;
    case Value::String:
      field.Update(text);
      return;
  }
}
