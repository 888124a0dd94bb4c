#pragma once

#include "contracts/contract.h"
#include "platform/caption_painter.h"
#include "support/picture.h"

namespace vellora {

class CaptionPainterSubject {
 public:
  virtual ~CaptionPainterSubject() = default;

  virtual CaptionPainter& painter() = 0;
};

using CaptionPainterContract = ContractTest<CaptionPainterSubject>;

// A painter whose pictures can be looked at.
class PictureSubject : public CaptionPainterSubject {
 public:
  virtual Picture picture(const CaptionImage& image) = 0;
};

using PictureContract = ContractTest<PictureSubject>;

}  // namespace vellora
