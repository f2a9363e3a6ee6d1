#pragma once
// The page's pictures as the window has them: its picture files, smoothed when the page
// is drawn larger than they are.
#include "print/score_sheets.h"
#include "window/picture_store.h"

namespace lirenza {

class StoredPagePictures : public PagePictures {
 public:
  explicit StoredPagePictures(PictureStore& store) : store_(store) {}
  void Draw(QPainter& painter, const QString& name, QPointF at) override {
    painter.drawImage(at, store_.Picture(name));
  }

 private:
  PictureStore& store_;
};

}  // namespace lirenza
