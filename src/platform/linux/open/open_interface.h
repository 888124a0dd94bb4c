#pragma once

// Under what name, path and interface the running overlay takes URLs on the session bus. The one
// method is Open(as urls): URLs as they were given, answered once they are taken.
namespace vellora::OpenInterface {

inline constexpr const char* busName = "org.vellora.Vellora";
inline constexpr const char* objectPath = "/org/vellora/Vellora";
inline constexpr const char* interfaceName = "org.vellora.Vellora";
inline constexpr const char* openMethod = "Open";

}  // namespace vellora::OpenInterface
