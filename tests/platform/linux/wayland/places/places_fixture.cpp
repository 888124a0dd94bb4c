#include "platform/linux/wayland/places/places_fixture.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/accessibility/linux_accessibility.h"
#include "platform/linux/glib/private_bus.h"
#include "platform/linux/players/browser_windows.h"
#include "platform/linux/wayland/locator/window_locator.h"
#include "platform/player.h"

namespace vellora {

namespace {

const std::string page = std::string("file://") + VELLORA_PLACED_PAGE;

constexpr double patience = 40;  // seconds, for what a busy machine takes longest for
constexpr ReadingLimits unhurried{.seconds = 20, .messagingTimeout = 20};

std::optional<Rect> frameOf(AccessibilityElement& element) {
  const auto position = element.attribute(AccessibilityAttribute::position);
  const auto size = element.attribute(AccessibilityAttribute::size);
  const auto* const origin = std::get_if<Point>(&position);
  const auto* const extent = std::get_if<Size>(&size);
  if (origin == nullptr || extent == nullptr) return std::nullopt;
  return Rect{origin->x, origin->y, extent->width, extent->height};
}

std::shared_ptr<AccessibilityElement> markerIn(AccessibilityElement& element,
                                               std::string_view list) {
  const auto children = element.attribute(list);
  const auto* const elements = std::get_if<AccessibilityElements>(&children);
  if (elements == nullptr) return nullptr;
  for (const auto& child : *elements) {
    const auto name = child->attribute(AccessibilityAttribute::title);
    const auto* const text = std::get_if<std::string>(&name);
    if (text != nullptr && *text == "marker") return child;
    if (auto found = markerIn(*child, AccessibilityAttribute::children)) return found;
  }
  return nullptr;
}

PlayerDescriptionPtr placedDescription() {
  auto description = std::make_shared<PlayerDescription>();
  description->identifier = "placed";
  description->windowClasses = {"org.example.Placed"};
  for (const std::string_view name : browserWindowClasses()) {
    description->windowClasses.emplace_back(name);
  }
  return description;
}

std::ostream& operator<<(std::ostream& output, const std::optional<Rect>& rect) {
  if (!rect) return output << "nowhere";
  return output << rect->x << ',' << rect->y << ' ' << rect->width << 'x' << rect->height;
}

}  // namespace

std::optional<Rect> redBox(const ScreenPicture& picture) {
  int left = picture.width, right = -1, top = picture.height, bottom = -1;
  const std::string red("\xff\0\0", 3);
  for (std::size_t at = picture.pixels.find(red); at != red.npos;
       at = picture.pixels.find(red, at + 1)) {
    if (at % red.size() != 0) continue;
    const auto pixel = static_cast<int>(at / red.size());
    left = std::min(left, pixel % picture.width);
    right = std::max(right, pixel % picture.width);
    top = std::min(top, pixel / picture.width);
    bottom = std::max(bottom, pixel / picture.width);
  }
  if (right < left) return std::nullopt;
  return Rect{static_cast<double>(left), static_cast<double>(top),
              static_cast<double>(right - left + 1), static_cast<double>(bottom - top + 1)};
}

SessionProgram::SessionProgram(std::vector<std::string> arguments,
                               std::vector<std::pair<std::string, std::string>> environment)
    : pid_(fork()) {
  if (pid_ != 0) return;
  for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

SessionProgram::~SessionProgram() {
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

PlacesFixture::PlacesFixture() : accessibility(makeLinuxAccessibility(usualMemory, windows)) {
  auto locator = makeWindowLocator();
  if (!locator) throw std::runtime_error("no locator fits the session");
  workspace = std::make_unique<WaylandWorkspace>(
      std::move(locator),
      WaylandScreens{.primaryHeight = [] { return 800; },
                     .primaryScale = [this] { return scale; },
                     .largestScale = [this] { return scale; },
                     .scaleUnder = [this](const Rect&) { return scale; }},
      std::vector<PlayerDescriptionPtr>{placedDescription()}, windows);
}

std::vector<std::string> PlacesFixture::gtk3(bool hasHeader) {
  return {VELLORA_PLACED_GTK3, hasHeader ? "header" : "none"};
}

std::vector<std::string> PlacesFixture::gtk4(bool hasHeader) {
  return {VELLORA_PLACED_GTK4, hasHeader ? "header" : "none"};
}

// Debian's own interpreter has Qt.
std::vector<std::string> PlacesFixture::qt() { return {"/usr/bin/python3", VELLORA_PLACED_QT}; }

std::vector<std::string> PlacesFixture::firefox() const {
  const auto profile = browsers_ / "firefox";
  std::filesystem::create_directory(profile);
  std::ofstream(profile / "user.js")
      << "user_pref('browser.aboutwelcome.enabled', false);\n"
         "user_pref('browser.startup.homepage_override.mstone', 'ignore');\n"
         "user_pref('browser.shell.checkDefaultBrowser', false);\n"
         "user_pref('datareporting.policy.dataSubmissionEnabled', false);\n"
         "user_pref('app.update.enabled', false);\n"
         "user_pref('app.normandy.enabled', false);\n"
         "user_pref('network.captive-portal-service.enabled', false);\n"
         "user_pref('network.connectivity-service.enabled', false);\n";
  return {"firefox-esr", "--no-remote", "--profile", profile, page};
}

std::vector<std::string> PlacesFixture::chromium() const {
  return {"chromium",
          "--no-sandbox",  // which root may not have, and
          "--test-type",   // of which nothing shall be said
          "--user-data-dir=" + (browsers_ / "chromium").string(),
          "--no-first-run",
          "--ozone-platform=wayland",
          "--force-renderer-accessibility",
          "--disable-background-networking",
          "--password-store=basic",
          page};
}

void PlacesFixture::start(const std::vector<std::string>& arguments, bool isX11) {
  program = std::make_unique<SessionProgram>(
      arguments,
      std::vector<std::pair<std::string, std::string>>{{"GDK_BACKEND", isX11 ? "x11" : "wayland"},
                                                       {"GSK_RENDERER", "cairo"},
                                                       {"MOZ_ENABLE_WAYLAND", "1"},
                                                       {"QT_QPA_PLATFORM", "wayland"},
                                                       {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}});
  ASSERT_TRUE(eventually([this] { return front() == program->pid(); }));
}

std::int32_t PlacesFixture::front() {
  const auto application = workspace->frontmostApplication();
  return application ? application->processIdentifier() : 0;
}

std::optional<Rect> PlacesFixture::told() {
  const auto root = accessibility->applicationElement(program->pid(), musicPlayer, unhurried);
  const auto marker = markerIn(*root, AccessibilityAttribute::windows);
  return marker ? frameOf(*marker) : std::nullopt;
}

bool PlacesFixture::eventuallyRight(const std::function<bool(const Rect& marker)>& holds) {
  std::optional<Rect> asked, seen;
  const bool isRight = eventually([&] {
    asked = told();
    seen = redBox(picture());
    // A marker that is not whole points away from the corner covers parts of pixels.
    const auto isNear = [&](double points, double pixels) {
      const bool isSharp = std::fmod(scale, 1) == 0 && !isSmoothed;
      return std::abs(points * scale - pixels) < (isSharp ? 0.01 : 1.01);
    };
    return asked && seen && isNear(asked->x, seen->x) && isNear(asked->y, seen->y) &&
           isNear(asked->maxX(), seen->maxX()) && isNear(asked->maxY(), seen->maxY()) &&
           (!holds || holds(*asked));
  });
  if (!isRight) std::cerr << "told " << asked << ", seen " << seen << '\n';
  return isRight;
}

bool PlacesFixture::eventually(const std::function<bool()>& condition) {
  return runLoopUntil(condition, patience);
}

}  // namespace vellora
