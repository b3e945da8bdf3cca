// The three standard descriptors, made safe before anything else runs.
#pragma once

namespace tavrel::host {

// Makes sure that descriptors 0, 1 and 2 are open, so that no file of ours is opened as one of
// them; one that was closed cannot be written to. Makes a write to a closed pipe, or beyond the
// length that files may have here, an error instead of a signal.
void PrepareStandardDescriptors() noexcept;

}  // namespace tavrel::host
