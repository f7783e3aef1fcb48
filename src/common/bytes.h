#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace glimmer {

/// Appends little-endian integers and raw bytes to a growing buffer.
class ByteWriter {
public:
    void u8(uint8_t value) { data_.push_back(value); }
    void u32(uint32_t value) {
        for (unsigned shift = 0; shift < 32; shift += 8) data_.push_back(static_cast<uint8_t>(value >> shift));
    }
    void i32(int32_t value) { u32(static_cast<uint32_t>(value)); }
    void bytes(std::span<const uint8_t> data) { data_.insert(data_.end(), data.begin(), data.end()); }
    [[nodiscard]] const std::vector<uint8_t>& data() const { return data_; }
    std::vector<uint8_t> take() { return std::move(data_); }

private:
    std::vector<uint8_t> data_;
};

/// Reads what ByteWriter wrote. A read past the end answers 0 or nothing and makes ok() false for good, so a
/// caller may read a whole record and ask once.
class ByteReader {
public:
    explicit ByteReader(std::span<const uint8_t> data) : data_(data) {}
    uint8_t u8() {
        const std::span<const uint8_t> b = bytes(1);
        return b.empty() ? uint8_t{0} : b[0];
    }
    uint32_t u32() {
        const std::span<const uint8_t> b = bytes(4);
        if (b.empty()) return 0;
        return static_cast<uint32_t>(b[0]) | static_cast<uint32_t>(b[1]) << 8U | static_cast<uint32_t>(b[2]) << 16U |
               static_cast<uint32_t>(b[3]) << 24U;
    }
    int32_t i32() { return static_cast<int32_t>(u32()); }
    /// The next `count` bytes, in place; an empty span when there are fewer.
    std::span<const uint8_t> bytes(size_t count) {
        if (!ok_ || count > data_.size() - at_) {
            ok_ = false;
            return {};
        }
        const std::span<const uint8_t> part = data_.subspan(at_, count);
        at_ += count;
        return part;
    }
    [[nodiscard]] bool ok() const { return ok_; }
    [[nodiscard]] size_t left() const { return data_.size() - at_; }

private:
    std::span<const uint8_t> data_;
    size_t at_ = 0;
    bool ok_ = true;
};

}  // namespace glimmer
