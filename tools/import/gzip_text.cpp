#include "tools/import/gzip_text.h"

#include <algorithm>
#include <climits>
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
      const std::size_t offered = std::min<std::size_t>(rest_.size(), INT_MAX);
      // zlib does not write to its input, but does not say so either.
      stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(rest_.data()));
      stream_.avail_in = static_cast<uInt>(offered);
      stream_.next_out = reinterpret_cast<Bytef*>(chunk_);
      stream_.avail_out = chunkSize;
      state = inflate(&stream_, Z_NO_FLUSH);
      rest_.remove_prefix(offered - stream_.avail_in);
      text.append(chunk_, chunkSize - stream_.avail_out);
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
  char chunk_[chunkSize]{};
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
