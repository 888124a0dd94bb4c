#include "contracts/workspace_contract.h"

#include <gmock/gmock.h>

namespace vellora {
namespace {

using testing::ElementsAreArray;
using testing::IsEmpty;
using Program = WorkspaceSubject::Program;

Program programOf(const RunningApplication& application) {
  return {application.bundleIdentifier(), application.processIdentifier()};
}

std::optional<Program> frontmost(Workspace& workspace) {
  const auto application = workspace.frontmostApplication();
  if (!application) return std::nullopt;
  return programOf(*application);
}

}  // namespace

TEST_P(WorkspaceContract, TheFrontmostProgramHasItsIdentifierAndProcess) {
  const Program inFront = subject->inFront();  // first, for it arranges what is asked then
  EXPECT_EQ(frontmost(subject->workspace()), inFront);
}

TEST_P(WorkspaceContract, FindsEveryRunningProgramOfAnIdentifierInOrder) {
  const auto expected = subject->running();
  ASSERT_FALSE(expected.empty());
  std::vector<Program> found;
  for (const auto& each : subject->workspace().runningApplications(*expected[0].identifier)) {
    found.push_back(programOf(*each));
  }
  EXPECT_THAT(found, ElementsAreArray(expected));
}

TEST_P(WorkspaceContract, FindsNothingUnderAnotherIdentifier) {
  const std::string identifier = *subject->running().at(0).identifier;
  for (const std::string& other :
       {std::string(), std::string("org.vellora.nowhere"), identifier.substr(0, 9)}) {
    EXPECT_THAT(subject->workspace().runningApplications(other), IsEmpty()) << other;
  }
}

TEST_P(WorkspaceContract, MeasuresThePrimaryScreenAndTheMainOnesScale) {
  EXPECT_EQ(subject->workspace().primaryScreenHeight(), subject->primaryHeight());
  EXPECT_EQ(subject->workspace().mainScreenScale(), subject->mainScale());
}

TEST_P(ChangingWorkspaceContract, TheFrontmostProgramIsTheOneOfNow) {
  Workspace& workspace = subject->workspace();
  const Program player{"com.apple.Music", 21};
  const Program nameless{std::nullopt, 22};
  for (const std::optional<Program>& program : {std::optional(player), std::optional(nameless),
                                                std::optional(player), std::optional<Program>()}) {
    subject->bringToFront(program);
    EXPECT_EQ(frontmost(workspace), program);
  }
}

TEST_P(ChangingWorkspaceContract, WhatWasFoundKeepsItsValuesWhenTheProgramIsGone) {
  const Program player{"com.apple.Music", 21};
  subject->bringToFront(player);
  const auto found = subject->workspace().frontmostApplication();
  ASSERT_TRUE(found);
  subject->losePrograms();
  EXPECT_EQ(programOf(*found), player);
  EXPECT_EQ(subject->workspace().frontmostApplication(), nullptr);
}

TEST_P(ChangingWorkspaceContract, WithoutAScreenThereIsNothingToMeasure) {
  subject->loseScreens();
  EXPECT_EQ(subject->workspace().primaryScreenHeight(), std::nullopt);
  EXPECT_EQ(subject->workspace().mainScreenScale(), std::nullopt);
}

}  // namespace vellora
