#import "platform/macos/music_scripting.h"

#import <Foundation/Foundation.h>

#import "platform/macos/convert.h"

namespace vellora {

namespace {

class AppleScripting final : public MusicScripting {
 public:
  ScriptOutcome run(const ScriptRequest& request) override {
    @autoreleasepool {
      ScriptOutcome outcome;
      NSAppleScript* const script =
          [[NSAppleScript alloc] initWithSource:toNSString(request.source)];
      if (script == nil) return outcome;
      outcome.created = true;
      NSDictionary<NSString*, id>* error = nil;
      NSAppleEventDescriptor* const descriptor = [script executeAndReturnError:&error];
      NSString* const reply = descriptor.stringValue;
      if (reply != nil) outcome.reply = fromNSString(reply);
      if (error != nil) outcome.errorDescription = fromNSString(error.description);
      return outcome;
    }
  }
};

}  // namespace

std::unique_ptr<MusicScripting> makeAppleScripting() { return std::make_unique<AppleScripting>(); }

}  // namespace vellora
