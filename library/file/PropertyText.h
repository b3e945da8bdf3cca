// The values of a property list as hosts are given them: each as a text.
#pragma once

#include <cstdint>

#include "tavrel/tavrel.h"
#include "xml/Records.h"

namespace tavrel {

// As GetSongProperty(), from a dictionary, which may be none. Takes no memory.
// Cost: one walk up to the key; linear in the value.
std::int32_t CopyProperty(const TBXMLElement* dict, const char* key, char* buffer,
                          std::int32_t bufferSize) noexcept;

// As VisitSongProperties(), over a dictionary, which may be none. Texts without references are shown where
// they stand, others out of memory of the call, which grows only when one is longer than all before it.
// Cost: one walk.
std::int32_t VisitProperties(const TBXMLElement* dict, PropertyVisitor visitor,
                             void* context) noexcept;

}  // namespace tavrel
