// The little-endian binary archive of the tools' template files: fixed-size integers and
// reals, and archive strings (a length prefix, then the string's bytes in the ANSI code page,
// GBK, with no terminator).
//
// Archive string prefixes:
//   length < 255            one byte
//   length < 0xFFFE         0xFF, then a uint16
//   otherwise               0xFF, the uint16 0xFFFF, then a uint32
// A reader accepts all three forms whatever the length (a short string written in a long
// form reads back), and a writer always uses the shortest.
//
// Strings are UTF-8 in memory; the writer encodes and the reader decodes at this boundary.
// The reader never allocates more than the bytes it was given: a length past the end is a
// failed read. After the first failed read every further read fails, so a record reader can
// read all its fields and test once.
//
// Plain value objects, no locking; nothing throws (allocation failure aside).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class CArchiveWriter {
public:
    void writeU16(std::uint16_t v);
    void writeI32(std::int32_t v);
    void writeU32(std::uint32_t v);
    void writeF64(double v);
    // A UTF-8 text, stored as GBK.
    void writeString(std::string_view utf8);
    // Bytes stored as they are (already GBK, or ASCII such as a magic).
    void writeRawString(std::string_view bytes);

    const std::string& bytes() const { return m_bytes; }
    std::string take() { return std::move(m_bytes); }

private:
    std::string m_bytes;
};

class CArchiveReader {
public:
    explicit CArchiveReader(std::string_view bytes) : m_bytes(bytes) {}

    bool readU16(std::uint16_t& v);
    bool readI32(std::int32_t& v);
    bool readU32(std::uint32_t& v);
    bool readF64(double& v);
    // A GBK string, returned as UTF-8. Bytes that do not decode become U+FFFD.
    bool readString(std::string& utf8);
    // The same, cut to at most `maxGbkBytes` bytes of GBK on a character boundary (the
    // fixed-size text fields of the tools' records).
    bool readString(std::string& utf8, std::size_t maxGbkBytes);
    // The string's bytes as stored.
    bool readRawString(std::string& bytes);

    bool ok() const { return m_ok; }
    bool atEnd() const { return m_pos == m_bytes.size(); }
    std::size_t remaining() const { return m_bytes.size() - m_pos; }
    // False once a string was read that would not be written back byte for byte (its bytes
    // are not valid GBK, it was cut, or its prefix was longer than needed).
    bool exact() const { return m_exact; }

private:
    bool take(std::size_t n, const char*& out);

    std::string_view m_bytes;
    std::size_t m_pos = 0;
    bool m_ok = true;
    bool m_exact = true;
};
