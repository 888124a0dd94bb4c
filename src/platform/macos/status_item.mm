#import "platform/macos/status_item.h"

#include <utility>

#import <AppKit/AppKit.h>

#import "platform/macos/convert.h"

// What a menu entry's click is sent to.
@interface VelloraMenuTarget : NSObject
- (instancetype)initWithAction:(std::function<void()>)action;
- (void)perform:(id)sender;
@end

@implementation VelloraMenuTarget {
  std::function<void()> _action;
}

- (instancetype)initWithAction:(std::function<void()>)action {
  self = [super init];
  if (self != nil) _action = std::move(action);
  return self;
}

- (void)perform:(id)__unused sender {
  _action();
}

@end

namespace vellora {

namespace {

class MenuBarItem final : public StatusItem {
 public:
  explicit MenuBarItem(NSStatusItem* item) : item(item) {}
  ~MenuBarItem() override { [NSStatusBar.systemStatusBar removeStatusItem:item]; }

  bool hasButton() const override { return item.button != nil; }

  void setTitle(std::string_view title) override { item.button.title = toNSString(title); }

  void setToolTip(std::string_view toolTip) override { item.button.toolTip = toNSString(toolTip); }

  void setMenu(std::vector<MenuEntry> entries) override {
    NSMenu* const menu = [[NSMenu alloc] init];
    // A menu item holds its target weakly.
    targets = [[NSMutableArray alloc] init];
    for (MenuEntry& entry : entries) {
      if (entry.separator) {
        [menu addItem:NSMenuItem.separatorItem];
        continue;
      }
      // Without an action the menu itself shows the entry disabled.
      NSMenuItem* const menuItem =
          [menu addItemWithTitle:toNSString(entry.title)
                          action:entry.action ? @selector(perform:) : nullptr
                   keyEquivalent:toNSString(entry.keyEquivalent)];
      if (!entry.action) continue;
      VelloraMenuTarget* const target =
          [[VelloraMenuTarget alloc] initWithAction:std::move(entry.action)];
      [targets addObject:target];
      menuItem.target = target;
    }
    item.menu = menu;
  }

 private:
  NSStatusItem* const item;
  NSMutableArray<VelloraMenuTarget*>* targets;
};

}  // namespace

std::unique_ptr<StatusItem> makeMenuBarItem(NSStatusItem* item) {
  if (item == nil) return nullptr;
  return std::make_unique<MenuBarItem>(item);
}

}  // namespace vellora
