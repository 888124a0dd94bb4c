#pragma once

#include <string>
#include <string_view>

namespace vellora::OverlayMatching {

// The comparison key of a text: Traditional Chinese characters made Simplified; then case, marks
// and width folded; then everything but letters, marks and numbers (general categories L, M, N)
// dropped, spaces included. So a text, and its parts cut or joined differently, have keys that
// concatenate. Possibly empty; an empty key matches nothing. Never shown, never written to a file.
// The same under every locale. Any thread; never fails.
std::string normalized(std::string_view text);

}  // namespace vellora::OverlayMatching
