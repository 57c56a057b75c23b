#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ostrel::bundle_reader {

/// Whether `length` bytes from `offset` on lie within `size` bytes, whatever the numbers.
inline bool fits(std::uint64_t size, std::uint64_t offset, std::uint64_t length)
{
    return offset <= size && length <= size - offset;
}

/// Bytes that are read piece by piece. What is read was there at that moment; a file may change between two readings.
class ByteSource {
public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// In bytes; of a file: when it was opened.
    virtual std::uint64_t size() const = 0;

    /// Copies at most `length` bytes from `offset` on to `to`, and tells how many: fewer only where the source ends.
    ///
    /// @throws what the kind of source says
    virtual std::size_t read(std::uint64_t offset, char* to, std::size_t length) const = 0;

    /// The same as a text.
    /// @throws std::bad_alloc, and as read()
    std::string text(std::uint64_t offset, std::size_t length) const;
};

/// Bytes in memory.
class MemoryBytes : public ByteSource {
public:
    /// Of somebody else, who keeps them as long as this lives.
    explicit MemoryBytes(std::string_view bytes) : m_bytes{bytes} {}

    std::uint64_t size() const override { return m_bytes.size(); }
    /// @throws nothing
    std::size_t read(std::uint64_t offset, char* to, std::size_t length) const override;

private:
    std::string_view m_bytes;
};

/// Bytes in memory of its own.
class KeptBytes : public ByteSource {
public:
    explicit KeptBytes(std::string bytes) : m_bytes{std::move(bytes)} {}

    std::uint64_t size() const override { return m_bytes.size(); }
    /// @throws nothing
    std::size_t read(std::uint64_t offset, char* to, std::size_t length) const override
    {
        return MemoryBytes{m_bytes}.read(offset, to, length);
    }

private:
    const std::string m_bytes;
};

} // namespace ostrel::bundle_reader
