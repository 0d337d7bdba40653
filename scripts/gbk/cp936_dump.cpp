#include <windows.h>
#include <cstdio>
// Prints the Unicode value of every double-byte code of code page 936 (0000 when unmapped),
// one line per lead byte, as scripts/gbk/to_inc.py expects.
int main() {
    int mapped = 0;
    for (int lead = 0x81; lead <= 0xFE; ++lead) {
        for (int t = 0x40; t <= 0xFE; ++t) {
            if (t == 0x7F) { continue; }
            char in[2] = {(char)lead, (char)t};
            wchar_t w[4] = {0};
            int n = MultiByteToWideChar(936, MB_ERR_INVALID_CHARS, in, 2, w, 4);
            unsigned v = (n == 1) ? (unsigned)w[0] : 0;
            if (v) ++mapped;
            std::printf("%04X%s", v, t == 0xFE ? "\n" : " ");
        }
    }
    char e = (char)0x80; wchar_t w[2]; int n = MultiByteToWideChar(936, MB_ERR_INVALID_CHARS, &e, 1, w, 2);
    std::fprintf(stderr, "mapped %d; 0x80 -> n=%d %04X\n", mapped, n, n ? (unsigned)w[0] : 0);
}
