#pragma once

#include <zlib.h>

namespace glimmer {

/// A stream of zlib that is ended whatever happens. Of no use unless ok(): there was no memory for it.
template <int (*end)(z_streamp)>
class ZlibStream : public z_stream {
public:
    ~ZlibStream() {
        if (ok_) end(this);
    }
    ZlibStream(const ZlibStream&) = delete;
    ZlibStream& operator=(const ZlibStream&) = delete;
    ZlibStream(ZlibStream&&) = delete;
    ZlibStream& operator=(ZlibStream&&) = delete;
    [[nodiscard]] bool ok() const { return ok_; }

protected:
    ZlibStream() : z_stream{} {}
    void begun(int answer) { ok_ = answer == Z_OK; }

private:
    bool ok_ = false;
};

class DeflateStream : public ZlibStream<&deflateEnd> {
public:
    explicit DeflateStream(int level, int strategy = Z_DEFAULT_STRATEGY) {
        constexpr int windowBits = 15;
        constexpr int memoryLevel = 8;
        begun(deflateInit2(this, level, Z_DEFLATED, windowBits, memoryLevel, strategy));
    }
};

class InflateStream : public ZlibStream<&inflateEnd> {
public:
    InflateStream() { begun(inflateInit(this)); }
};

}  // namespace glimmer
