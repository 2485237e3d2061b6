#include "host/logo.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "forms/platform.h"

namespace tarvik::host {
namespace {

namespace fs = std::filesystem;

constexpr int kAncho = 260;
constexpr int kAlto = 60;

// The file's bytes; empty for one that isn't there or too large.
std::string Lee(const fs::path& path) {
  constexpr std::uintmax_t kMayor = 2 << 20;
  std::error_code failed;
  if (!fs::is_regular_file(path, failed) || fs::file_size(path, failed) > kMayor || failed) return "";
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string EnBase64(std::string_view bytes) {
  constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto byte = [&](std::size_t at) -> unsigned {
      return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
    };
    const unsigned three = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    text += kLetters[three >> 18];
    text += kLetters[three >> 12 & 63];
    text += i + 1 < bytes.size() ? kLetters[three >> 6 & 63] : '=';
    text += i + 2 < bytes.size() ? kLetters[three & 63] : '=';
  }
  return text;
}

// A PNG begins with its signature and a block that tells its size.
std::optional<Logo> DePng(const std::string& bytes) {
  constexpr std::size_t kSize = 16;
  if (bytes.size() < kSize + 8 || !bytes.starts_with("\x89PNG\r\n\x1a\n")) return {};
  const auto number = [&](std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
  };
  const double width = number(kSize);
  const double height = number(kSize + 4);
  if (width < 1 || height < 1) return {};
  const double scale = std::min({1.0, kAncho / width, kAlto / height});
  const auto reduced = [&](double size) { return std::max(1, static_cast<int>(std::lround(size * scale))); };
  return Logo{"data:image/png;base64," + EnBase64(bytes), reduced(width), reduced(height)};
}

std::optional<Logo> DeSvg(const std::string& bytes) {
  if (bytes.find("<svg") == std::string::npos) return {};
  return Logo{"data:image/svg+xml;base64," + EnBase64(bytes), 0, kAlto};
}

}  // namespace

std::optional<Logo> LeeLogo(const std::string& carpeta) {
  const fs::path folder = forms::NativePath(carpeta);
  if (auto logo = DePng(Lee(folder / "logo.png"))) return logo;
  return DeSvg(Lee(folder / "logo.svg"));
}

}  // namespace tarvik::host
