#include "tools/import/gzip_text.h"

#include <algorithm>
#include <array>
#include <zlib.h>

#include "tools/common/tool.h"

namespace {

constexpr std::size_t chunkSize = std::size_t{64} * 1024;
/// zlib's largest window, with the wrapper of gzip.
constexpr int windowOfGzip = 15 + 16;

[[noreturn]] void refuse(const std::string& name, const char* what) {
  throw ToolError(ToolStatus::badData, name + ": " + what);
}

/// One run of zlib's decoder over bytes in memory.
class Inflater {
 public:
  Inflater(std::string_view bytes, const std::string& name) : rest_(bytes), name_(name) {
    if (inflateInit2(&stream_, windowOfGzip) != Z_OK) {
      refuse(name, "no memory to unpack the gzip file");
    }
  }
  ~Inflater() { inflateEnd(&stream_); }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  /// Unpacks one member and takes it off the input.
  void member(std::string& text) {
    inflateReset(&stream_);
    for (int state = Z_OK; state != Z_STREAM_END;) {
      const std::size_t offered = std::min(rest_.size(), chunkSize);
      std::copy_n(rest_.begin(), offered, packed_.begin());
      stream_.next_in = packed_.data();
      stream_.avail_in = static_cast<uInt>(offered);
      stream_.next_out = plain_.data();
      stream_.avail_out = chunkSize;
      state = inflate(&stream_, Z_NO_FLUSH);
      rest_.remove_prefix(offered - stream_.avail_in);
      text.append(plain_.data(), plain_.data() + (chunkSize - stream_.avail_out));
      if (state != Z_OK && state != Z_STREAM_END) {
        refuse(name_, state == Z_BUF_ERROR ? "the gzip file is cut short" : "a damaged gzip file");
      }
      if (text.size() > largestUnpacked) {
        refuse(name_, "the gzip file unpacks to more than 2 GB");
      }
    }
  }

  std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
  const std::string& name_;
  z_stream stream_{};
  std::array<Bytef, chunkSize> packed_{};
  std::array<Bytef, chunkSize> plain_{};
};

} // namespace

bool isGzip(std::string_view bytes) {
  return bytes.substr(0, 2) == "\x1f\x8b";
}

std::string unpackGzip(std::string_view bytes, const std::string& name) {
  std::string text;
  Inflater inflater(bytes, name);
  do {
    inflater.member(text);
  } while (isGzip(inflater.rest()));
  if (inflater.rest().find_first_not_of('\0') != std::string_view::npos) {
    refuse(name, "the gzip file goes on after its end");
  }
  return text;
}
