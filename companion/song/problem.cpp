#include "companion/song/problem.h"

#include <algorithm>
#include <utility>

#include "companion/song/text.h"

namespace vellora::companion {

std::string_view nameOf(Severity severity) {
  switch (severity) {
    case Severity::note:
      return "note";
    case Severity::warning:
      return "warning";
    case Severity::error:
      break;
  }
  return "error";
}

std::string Problem::text() const {
  std::string result = file;
  if (line > 0) result.append(":").append(std::to_string(line));
  result.append(": ").append(nameOf(severity)).append(": ").append(message);
  if (!advice.empty()) result.append("; ").append(advice);
  return cleaned(result);
}

void Problems::note(int line, std::string message, std::string advice) {
  add(Severity::note, line, std::move(message), std::move(advice));
}

void Problems::warn(int line, std::string message, std::string advice) {
  add(Severity::warning, line, std::move(message), std::move(advice));
}

void Problems::fail(int line, std::string message, std::string advice) {
  add(Severity::error, line, std::move(message), std::move(advice));
}

void Problems::add(Severity severity, int line, std::string message, std::string advice) {
  if (list_.size() > most && severity != Severity::error) return;
  if (list_.size() == most && severity != Severity::error) {
    list_.push_back({Severity::warning, file_, line, "more mistakes follow, which are not listed",
                     "mend the ones above first"});
    return;
  }
  if (list_.size() > most + most) return;
  list_.push_back({severity, file_, line, std::move(message), std::move(advice)});
}

std::vector<Problem> Problems::take() && {
  std::ranges::stable_sort(list_, {}, &Problem::line);
  return std::move(list_);
}

bool anyError(const std::vector<Problem>& problems) {
  return std::ranges::any_of(
      problems, [](const Problem& problem) { return problem.severity == Severity::error; });
}

}  // namespace vellora::companion
