#pragma once

#include <string>
#include <string_view>

namespace vellora {

// `text`, in UTF-8, as UTF-16. What is not UTF-8 becomes U+FFFD; every character is kept, a leading
// U+FEFF and U+0000 among them. Any thread.
std::u16string toUtf16(std::string_view text);

// `text`, in UTF-16, as UTF-8. A surrogate without its partner becomes U+FFFD. Any thread.
std::string fromUtf16(std::u16string_view text);

}  // namespace vellora
