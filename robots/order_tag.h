// Order tags: the remark text by which a robot window picks its own orders out of the
// host's order notifications, which reach every registered tool alike.
//
// A tag is an optional prefix ("$|", or "blader|" for one of the ladder robot's opening
// forms), then "h|", the robot window's handle, "|", the leg code, "|" and the host's
// millisecond tick count, both numbers as unsigned 32-bit decimals: "$|h|65537|te|1000".
// Two closing forms of the interlinked grids leave out the "|" before the tick count
// ("h|65537|txb1000"). The handle makes a tag unique among open windows, the tick count
// among one window's orders; a new tag is built for every order sent, re-sends included.
//
// Matching is whole-text equality with the tag a leg stored, so a notification for an older
// order of the same leg (whose tag has been replaced) never matches. Parsing is for reading
// a remark back (which window, which leg); it accepts exactly the texts the builder makes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/clock.h"
#include "host/window.h"

enum class TagPrefix : std::uint8_t { None, Dollar, Blader };

struct OrderTag {
    TagPrefix prefix = TagPrefix::None;
    WndHandle handle = 0;
    std::string leg;  // 1-4 lower-case letters: "te", "tx", "tea", "txb", "lea", ...
    std::uint32_t tick = 0;
    bool tickSeparator = true;  // false only for the "txb%lu" / "txc%lu" forms

    friend bool operator==(const OrderTag&, const OrderTag&) = default;
};

// The tag's text. The leg code is written as given.
std::string formatOrderTag(const OrderTag& tag);
// The parts of a remark, or nothing when it is not a tag in one of the forms above (numbers
// beyond 32 bits, signs, leading zeros, blanks or anything after the tick count included).
std::optional<OrderTag> parseOrderTag(std::string_view remark);
// Whether a notification's remark is the tag a leg stored: same length, every byte equal.
// An empty stored tag (no order out) matches nothing.
bool tagMatches(std::string_view remark, std::string_view stored);

// Builds the tags of one robot window. Tick counts come from the clock (the low 32 bits of
// its millisecond count, wrapping as the host's does); two tags built within the same
// millisecond still differ, because a count not after the last one issued is moved on by one.
// Owned by the robot; UI thread only.
class COrderTagSource {
public:
    COrderTagSource(WndHandle handle, const IClock& clock) : m_handle(handle), m_clock(&clock) {}

    std::string make(std::string_view leg, TagPrefix prefix = TagPrefix::None,
                     bool tickSeparator = true);
    WndHandle handle() const { return m_handle; }

private:
    WndHandle m_handle;
    const IClock* m_clock;
    std::optional<std::uint32_t> m_lastTick;
};
