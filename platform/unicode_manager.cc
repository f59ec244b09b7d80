#include "qr_config/platform/unicode_manager.h"

#include <iconv.h>

#include <cerrno>

#include "qr_config/platform/platform_errors.h"

namespace {

class Converter {
 public:
  explicit Converter(const std::string& from) : m_Descriptor(iconv_open("UTF-8", from.c_str())) {}
  ~Converter() {
    if (Valid()) iconv_close(m_Descriptor);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool Valid() const { return m_Descriptor != reinterpret_cast<iconv_t>(-1); }
  iconv_t Get() const { return m_Descriptor; }

 private:
  iconv_t m_Descriptor;
};

}  // namespace

UnicodeManager& UnicodeManager::Instance() {
  static UnicodeManager instance;
  return instance;
}

void UnicodeManager::PlatformToUTF8(const std::string& text, orv_utf8string& out,
                                    const std::string& charSetName) {
  if (charSetName.empty() || charSetName.find('/') != std::string::npos) {
    PlatformErrors::ThrowCharSetError(charSetName);
  }
  Converter converter(charSetName);
  if (!converter.Valid()) PlatformErrors::ThrowCharSetError(charSetName);

  std::string result(text.size() + 16, '\0');
  std::size_t used = 0;
  // One iconv run: the input when `input` is given, else the final shift sequence.
  auto run = [&](char** input, std::size_t* inputLeft) {
    for (;;) {
      char* output = &result[used];
      std::size_t outputLeft = result.size() - used;
      std::size_t done = iconv(converter.Get(), input, inputLeft, &output, &outputLeft);
      used = static_cast<std::size_t>(output - result.data());
      if (done != static_cast<std::size_t>(-1)) return;
      if (errno != E2BIG) PlatformErrors::ThrowCharSetError(charSetName);  // EILSEQ, EINVAL
      result.resize(result.size() * 2);
    }
  };
  // iconv does not write through the input pointer.
  char* input = const_cast<char*>(text.data());
  std::size_t inputLeft = text.size();
  run(&input, &inputLeft);
  run(nullptr, nullptr);
  result.resize(used);
  out = orv_utf8string(std::move(result));
}
