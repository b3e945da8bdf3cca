#include "host/page/Contents.h"

#include <algorithm>
#include <stdexcept>

namespace tavrel::host {

const PageColumn& PageContents::Of(Field field) const {
  const auto found =
      std::find_if(columns.begin(), columns.end(),
                   [field](const PageColumn& column) { return column.field == field; });
  if (found == columns.end()) throw std::out_of_range("the page has no such column");
  return *found;
}

}  // namespace tavrel::host
