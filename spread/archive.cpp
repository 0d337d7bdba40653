#include "spread/archive.h"

#include <bit>
#include <cstring>

#include "app/profile_ini.h"
#include "host/gbk_codec.h"

namespace {

template <class T>
void putLe(std::string& out, T v) {
    for (std::size_t i = 0; i < sizeof(T); ++i)
        out.push_back(static_cast<char>((static_cast<std::uint64_t>(v) >> (8 * i)) & 0xFF));
}

template <class T>
T getLe(const char* p) {
    std::uint64_t v = 0;
    for (std::size_t i = 0; i < sizeof(T); ++i)
        v |= static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])) << (8 * i);
    return static_cast<T>(v);
}

std::size_t prefixSize(std::size_t length) {
    if (length < 0xFF) return 1;
    if (length < 0xFFFE) return 3;
    return 7;
}

}  // namespace

void CArchiveWriter::writeU16(std::uint16_t v) {
    putLe(m_bytes, v);
}
void CArchiveWriter::writeI32(std::int32_t v) {
    putLe(m_bytes, static_cast<std::uint32_t>(v));
}
void CArchiveWriter::writeU32(std::uint32_t v) {
    putLe(m_bytes, v);
}
void CArchiveWriter::writeF64(double v) {
    putLe(m_bytes, std::bit_cast<std::uint64_t>(v));
}

void CArchiveWriter::writeString(std::string_view utf8) {
    writeRawString(gbk::fromUtf8(utf8));
}

void CArchiveWriter::writeRawString(std::string_view bytes) {
    const std::size_t n = bytes.size();
    if (n < 0xFF) {
        m_bytes.push_back(static_cast<char>(n));
    } else if (n < 0xFFFE) {
        m_bytes.push_back(static_cast<char>(0xFF));
        writeU16(static_cast<std::uint16_t>(n));
    } else {
        m_bytes.push_back(static_cast<char>(0xFF));
        writeU16(0xFFFF);
        writeU32(static_cast<std::uint32_t>(n));
    }
    m_bytes.append(bytes);
}

bool CArchiveReader::take(std::size_t n, const char*& out) {
    if (!m_ok || n > remaining()) {
        m_ok = false;
        return false;
    }
    out = m_bytes.data() + m_pos;
    m_pos += n;
    return true;
}

bool CArchiveReader::readU16(std::uint16_t& v) {
    const char* p;
    if (!take(2, p)) return false;
    v = getLe<std::uint16_t>(p);
    return true;
}

bool CArchiveReader::readU32(std::uint32_t& v) {
    const char* p;
    if (!take(4, p)) return false;
    v = getLe<std::uint32_t>(p);
    return true;
}

bool CArchiveReader::readI32(std::int32_t& v) {
    std::uint32_t u;
    if (!readU32(u)) return false;
    v = static_cast<std::int32_t>(u);
    return true;
}

bool CArchiveReader::readF64(double& v) {
    const char* p;
    if (!take(8, p)) return false;
    v = std::bit_cast<double>(getLe<std::uint64_t>(p));
    return true;
}

bool CArchiveReader::readRawString(std::string& bytes) {
    const char* p;
    if (!take(1, p)) return false;
    std::size_t n = static_cast<unsigned char>(*p);
    if (n == 0xFF) {
        std::uint16_t n16;
        if (!readU16(n16)) return false;
        n = n16;
        if (n16 == 0xFFFF) {
            std::uint32_t n32;
            if (!readU32(n32)) return false;
            n = n32;
        }
    }
    const char* s;
    if (!take(n, s)) return false;
    bytes.assign(s, n);
    return true;
}

bool CArchiveReader::readString(std::string& utf8) {
    const std::size_t before = m_pos;
    std::string raw;
    if (!readRawString(raw)) return false;
    utf8 = gbk::toUtf8(raw);
    // A longer prefix than the writer would choose, or bytes that do not survive decoding,
    // would not be written back as they were.
    if (m_pos - before != prefixSize(raw.size()) + raw.size() || gbk::fromUtf8(utf8) != raw)
        m_exact = false;
    return true;
}

bool CArchiveReader::readString(std::string& utf8, std::size_t maxGbkBytes) {
    if (!readString(utf8)) return false;
    std::string cut = cutGbk(utf8, maxGbkBytes);
    if (cut.size() != utf8.size()) {
        m_exact = false;
        utf8 = std::move(cut);
    }
    return true;
}
