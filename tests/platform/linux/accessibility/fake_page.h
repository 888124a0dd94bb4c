#pragma once

#include <cstdint>
#include <string>

#include <systemd/sd-bus.h>

#include "platform/linux/accessibility/fake_session.h"

namespace vellora {

// The parts of a fake program that browsers have and the player does not: text, documents,
// attributes, collections, and a media player. Each function answers the call and gives what
// sending the answer came to.

// A call to an object below the program's root, of one of the interfaces that a page has.
int answerPage(sd_bus* bus, sd_bus_message* call, const FakeProgram& program,
               const FakeAccessible& object);

// How many characters a text has for org.a11y.atspi.Text.
std::int32_t charactersOf(const std::string& text);

// The property Parent of org.a11y.atspi.Accessible: in whose list the object is.
int answerParent(sd_bus* bus, sd_bus_message* call, const FakeProgram& program,
                 const FakeAccessible& object);

bool isOfMedia(sd_bus_message* call);
int answerMedia(sd_bus_message* call, const FakeProgram& program);
void ownMedia(sd_bus* bus, const std::string& name);

// What `FakeProgramProcess::put` and `play` send.
int takeObject(sd_bus_message* call, FakeProgram& program);
int takeMedia(sd_bus* bus, sd_bus_message* call, FakeProgram& program);

}  // namespace vellora
