#include "window/control_factory.h"

#include <QButtonGroup>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QToolButton>
#include <QTreeWidget>

#include "window/picture_canvas.h"
#include "window/picture_store.h"

namespace lirenza {
namespace {

using layout::Control;
using layout::ControlKind;

Qt::Alignment AlignmentOf(const Control& c) {
  switch (c.alignment) {
    case layout::Alignment::Centre: return Qt::AlignHCenter | Qt::AlignVCenter;
    case layout::Alignment::Right: return Qt::AlignRight | Qt::AlignVCenter;
    case layout::Alignment::Left: break;
  }
  return Qt::AlignLeft | Qt::AlignVCenter;
}

// The row's font, made smaller where the caption would not fit across the control.
QFont FittedFont(const Control& c, int textWidth) {
  QFont font = ControlFont(c);
  if (!c.caption.empty()) font.setPixelSize(FittingPixelSize(font, ToQString(c.caption), textWidth));
  return font;
}

void SetColours(QWidget* w, const Control& c, QPalette::ColorRole textRole, QPalette::ColorRole backRole) {
  QPalette palette = w->palette();
  if (c.textColour) palette.setColor(textRole, QColor::fromRgb(*c.textColour));
  if (c.backColour) {
    palette.setColor(backRole, QColor::fromRgb(*c.backColour));
  } else if (backRole == QPalette::Base) {
    palette.setColor(backRole, Qt::transparent);  // the back picture shows through the field
  }
  w->setPalette(palette);
  if (c.backColour && backRole == QPalette::Window) w->setAutoFillBackground(true);
}

QWidget* MakeLabel(const Control& c, QWidget* parent) {
  auto* label = new QLabel(ToQString(c.caption), parent);
  label->setFont(FittedFont(c, c.place.width));
  label->setAlignment(AlignmentOf(c));
  label->setWordWrap(false);
  SetColours(label, c, QPalette::WindowText, QPalette::Window);
  return label;
}

QWidget* MakeTextField(const Control& c, QWidget* parent) {
  // The caption is the field's text from the end of the start pause on; the window
  // puts it in then.
  auto* field = new QLineEdit(parent);
  field->setFrame(false);
  field->setFont(ControlFont(c));
  field->setAlignment(AlignmentOf(c));
  field->setTextMargins(0, 0, 0, 0);
  field->setContentsMargins(0, 0, 0, 0);
  SetColours(field, c, QPalette::Text, QPalette::Base);
  return field;
}

template <typename Ranged>
void SetRange(Ranged* w, const Control& c) {
  w->setOrientation(Qt::Horizontal);
  w->setRange(c.range.minimum, c.range.maximum);
  w->setSingleStep(c.range.lineStep);
  w->setPageStep(c.range.pageStep);
  w->setValue(c.startValue);
}

QWidget* MakeBevelButton(const Control& c, QWidget* parent, PictureStore& pictures) {
  auto* button = new QToolButton(parent);
  button->setCheckable(true);
  button->setChecked(c.startValue != 0);
  if (!c.icon.empty()) {
    // Note icons are taller than their buttons: shrunk, keeping their shape.
    button->setIcon(QPixmap::fromImage(pictures.Picture(ToQString(c.icon))));
    button->setIconSize(QSize(c.place.width - 2, c.place.height - 2));
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
  } else {
    button->setText(ToQString(c.caption));
    button->setFont(FittedFont(c, c.place.width - 4));
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
  }
  SetColours(button, c, QPalette::ButtonText, QPalette::Button);
  return button;
}

QWidget* MakeMenuButton(const Control& c, QWidget* parent) {
  auto* button = new QToolButton(parent);
  button->setText(ToQString(c.caption));
  button->setFont(FittedFont(c, c.place.width - 16));  // room for the menu's arrow
  button->setToolButtonStyle(Qt::ToolButtonTextOnly);
  button->setPopupMode(QToolButton::InstantPopup);
  button->setMenu(new QMenu(button));
  SetColours(button, c, QPalette::ButtonText, QPalette::Button);
  return button;
}

QWidget* MakeList(const Control& c, QWidget* parent, PictureStore& pictures) {
  auto* list = new QTreeWidget(parent);
  list->setRootIsDecorated(false);
  list->setFont(ControlFont(c));
  list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  QStringList headers;
  for (const layout::ListColumn& column : layout::kScoreListColumns) headers << ToQString(column.header);
  list->setHeaderLabels(headers);
  list->header()->setFont(ControlFont(c));
  list->header()->setStretchLastSection(true);
  int column = 0;
  for (const layout::ListColumn& col : layout::kScoreListColumns)
    list->setColumnWidth(column++, c.place.width * col.percent / 100);
  QPalette palette = list->palette();
  if (!c.icon.empty()) palette.setBrush(QPalette::Base, QBrush(pictures.Picture(ToQString(c.icon))));
  if (c.textColour) palette.setColor(QPalette::Text, QColor::fromRgb(*c.textColour));
  list->setPalette(palette);
  return list;
}

QWidget* MakeWidget(const Control& c, QWidget* parent, PictureStore& pictures) {
  switch (c.kind) {
    case ControlKind::Canvas:
    case ControlKind::NoteCanvas: {
      auto* canvas = new PictureCanvas(parent);
      if (!c.picture.empty()) canvas->SetPicture(pictures.Picture(ToQString(c.picture)));
      return canvas;
    }
    case ControlKind::Label: return MakeLabel(c, parent);
    case ControlKind::TextField: return MakeTextField(c, parent);
    case ControlKind::ScrollBar: {
      auto* bar = new QScrollBar(parent);
      SetRange(bar, c);
      return bar;
    }
    case ControlKind::Slider: {
      auto* slider = new QSlider(parent);
      SetRange(slider, c);
      return slider;
    }
    case ControlKind::RadioButton: {
      // Its caption stands in a label beside it; the button keeps it for screen readers.
      auto* radio = new QRadioButton(parent);
      radio->setAccessibleName(ToQString(c.caption));
      radio->setAutoExclusive(false);  // the window groups each family
      radio->setChecked(c.startValue != 0);
      return radio;
    }
    case ControlKind::BevelButton: return MakeBevelButton(c, parent, pictures);
    case ControlKind::MenuButton: return MakeMenuButton(c, parent);
    case ControlKind::GroupBox: return new QGroupBox(parent);
    case ControlKind::List: return MakeList(c, parent, pictures);
  }
  return new QWidget(parent);
}

}  // namespace

QString ToQString(std::string_view text) { return QString::fromUtf8(text.data(), qsizetype(text.size())); }

QFont ControlFont(const Control& c) {
  QFont font(ToQString(layout::StandInFace(c.font.face)));
  font.setPixelSize(c.font.points);
  font.setBold(c.font.bold);
  return font;
}

int FittingPixelSize(const QFont& font, const QString& text, int width) {
  QFont trial = font;
  int size = font.pixelSize() > 0 ? font.pixelSize() : QFontInfo(font).pixelSize();
  for (; size > 6; --size) {
    trial.setPixelSize(size);
    if (QFontMetrics(trial).horizontalAdvance(text) <= width) break;
  }
  return size;
}

QWidget* MakeControl(const Control& c, QWidget* parent, const layout::Place& parentPlace, PictureStore& pictures) {
  QWidget* w = MakeWidget(c, parent, pictures);
  w->setObjectName(QStringLiteral("%1(%2)").arg(ToQString(layout::IdName(c.ref.id))).arg(c.ref.index));
  w->setGeometry(c.place.left - parentPlace.left, c.place.top - parentPlace.top, c.place.width, c.place.height);
  if (!c.tooltip.empty()) w->setToolTip(ToQString(c.tooltip));
  if (c.visibility != layout::Visibility::AtStart) w->hide();
  return w;
}

}  // namespace lirenza
