// The heap of a program that is about to make large tables.
#pragma once

namespace tavrel::host {

// Has what is allocated from now on, by all threads, come from huge pages, where the system has them and the C library
// is GNU's: without, asking for one small page after the other is a tenth of what the page of a large library takes.
// Only a wish.
void PreferHugePages() noexcept;

}  // namespace tavrel::host
