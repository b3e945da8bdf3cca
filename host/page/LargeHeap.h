// The heap of a program that is about to make large tables.
#pragma once

namespace tavrel::host {

// Has what is allocated from now on, by all threads, come from huge pages, where the system has them: without, asking the
// system for one small page after the other is a tenth of what a large page takes. Only a wish, on systems with the C library of GNU.
void PreferHugePages() noexcept;

}  // namespace tavrel::host
