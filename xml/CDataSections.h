// Taking CDATA markers out of a text, in place and in time linear in its length.
#pragma once

namespace tavrel::xml {

// Takes the markers of a run of CDATA sections out of character data. The run starts with the
// opener at `opener` and goes on through every section with no other '<' in between; its contents
// and what stands between them move together, and blanks fill the gap up to the next '<'.
// end:    where the text ends (a zero byte).
// Result: that '<', where scanning goes on: contents are never scanned for tags. Null, with nothing
//         moved, when a section of the run has no end or no '<' follows the run.
[[nodiscard]] char* JoinSections(char* opener, const char* end) noexcept;

// Takes the markers out of an attribute value, the bytes from `value` to `end`. A zero byte ends
// what is left when anything was taken out; the one at `end` is the caller's to write. Openers that
// come about by a removal count as well. One that has no end behind it goes, and the removal stops.
void RemoveValueMarkers(char* value, char* end) noexcept;

}  // namespace tavrel::xml
