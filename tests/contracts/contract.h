#pragma once

#include <memory>
#include <ostream>

#include <gtest/gtest.h>

namespace vellora {

// A backend as the suite of a contract sees it. A suite asserts what its seam's header promises,
// and nothing that only one backend has. What it must be able to arrange and to look at from
// outside is the suite's `Subject`, an abstract class that each backend implements; it is made anew
// for each test. `name` says under which circumstances, and appears in the test's name.
template <typename Subject>
struct Backend {
  const char* name;
  std::unique_ptr<Subject> (*make)();
};

template <typename Subject>
void PrintTo(const Backend<Subject>& backend, std::ostream* out) {
  *out << backend.name;
}

template <typename Subject, typename Made>
Backend<Subject> backend(const char* name) {
  return {name, []() -> std::unique_ptr<Subject> { return std::make_unique<Made>(); }};
}

template <typename Subject>
class ContractTest : public testing::TestWithParam<Backend<Subject>> {
 protected:
  const std::unique_ptr<Subject> subject = this->GetParam().make();
};

// Instantiates the suite of a seam for a backend, whose subject is `Made`.
#define VELLORA_INSTANTIATE(Name, Seam, Made)    \
  INSTANTIATE_TEST_SUITE_P(Name, Seam##Contract, \
                           testing::Values(backend<Seam##Subject, Made>(#Name)))

}  // namespace vellora
