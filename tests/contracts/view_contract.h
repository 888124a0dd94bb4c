#pragma once

#include "contracts/contract.h"
#include "platform/native_view.h"
#include "platform/panel.h"

namespace vellora {

// A view with which, and a panel with which nothing has been done.
class ViewSubject {
 public:
  virtual ~ViewSubject() = default;

  virtual NativeView& view() = 0;
  virtual Panel& panel() = 0;
};

using ViewContract = ContractTest<ViewSubject>;

// The same where others can see the panel.
class PanelSubject : public ViewSubject {
 public:
  virtual bool isShown() = 0;
  // Where it lies, as a person sees it; window-system coordinates.
  virtual Rect shownFrame() = 0;
};

using PanelContract = ContractTest<PanelSubject>;

// The same where views are really drawn.
class DrawingSubject : public ViewSubject {
 public:
  virtual CaptionPainter& painter() = 0;
};

using DrawingContract = ContractTest<DrawingSubject>;

}  // namespace vellora
