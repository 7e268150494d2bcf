#include "app/FormControls.h"

#include <functional>
#include <map>

#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOptionButton>
#include <QWheelEvent>

#include "app/FormFont.h"
#include "app/PathField.h"
#include "app/grid/GridColours.h"
#include "app/logic/FormLayout.h"
#include "app/logic/Products.h"
#include "app/text/QtText.h"

namespace tavrel::app {

namespace {

constexpr QRgb kFace = qRgb(192, 192, 255);
constexpr int kDesignedPixels = 12;
constexpr int kSmallestPixels = 9;

/// "*" for each character of a password, whatever the desktop's style would take.
class StarStyle : public QProxyStyle {
  public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_LineEdit_PasswordCharacter ? '*'
                                                     : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

QWidget* MakePanel(const ControlEntry& /*control*/, QWidget* parent) {
    return new QWidget(parent);
}

QWidget* MakeButton(const ControlEntry& control, QWidget* parent) {
    auto* button = new QPushButton(ToQt(control.caption), parent);
    button->setAutoDefault(true);  // Enter presses the button that has the focus
    return button;
}

/// The face keeps its colour in every style and theme, so it is drawn by a style that takes the palette's.
QWidget* MakeFaceButton(const ControlEntry& control, QWidget* parent) {
    QWidget* button = MakeButton(control, parent);
    QStyle* style = QStyleFactory::create(QStringLiteral("Fusion"));
    style->setParent(button);
    button->setStyle(style);
    QPalette palette = button->palette();
    palette.setColor(QPalette::Button, QColor(kFace));
    palette.setColor(QPalette::ButtonText, Qt::black);
    button->setPalette(palette);
    return button;
}

QWidget* MakePasswordField(const ControlEntry& /*control*/, QWidget* parent) {
    auto* field = new QLineEdit(parent);
    auto* style = new StarStyle;
    style->setParent(field);
    field->setStyle(style);
    field->setEchoMode(QLineEdit::Password);
    field->setAcceptDrops(false);
    return field;
}

QWidget* MakePathField(const ControlEntry& /*control*/, QWidget* parent) {
    return new PathField(parent);
}

QWidget* MakeTableBox(const ControlEntry& /*control*/, QWidget* parent) {
    auto* box = new QComboBox(parent);
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setAcceptDrops(false);
    box->lineEdit()->setAcceptDrops(false);
    box->setFocusPolicy(Qt::StrongFocus);  // the wheel brings no focus
    return box;
}

/// A wheel that passes over the list is none of its business: another product would change the paths.
class ProductList : public QComboBox {
  public:
    explicit ProductList(QWidget* parent) : QComboBox(parent) { setFocusPolicy(Qt::StrongFocus); }

  protected:
    void wheelEvent(QWheelEvent* event) override {
        if (hasFocus()) {
            QComboBox::wheelEvent(event);
        } else {
            event->ignore();
        }
    }
};

QWidget* MakeProductList(const ControlEntry& /*control*/, QWidget* parent) {
    auto* list = new ProductList(parent);
    for (const Product& product : Products()) {
        list->addItem(ToQt(product.item));
    }
    return list;
}

/// Styles draw the box's outline darker than the window, which in a dark desktop leaves none to be seen.
class OutlinedBox : public QCheckBox {
  public:
    using QCheckBox::QCheckBox;

  protected:
    void paintEvent(QPaintEvent* event) override {
        QCheckBox::paintEvent(event);
        if (!IsDark(palette())) {
            return;
        }
        QStyleOptionButton option;
        initStyleOption(&option);
        const QRect box = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
        QPainter painter(this);
        painter.setPen(GridLineColour(palette()).lighter());
        painter.drawRect(box.adjusted(0, 0, -1, -1));
    }
};

QWidget* MakeOptionBox(const ControlEntry& control, QWidget* parent) {
    return new OutlinedBox(ToQt(control.caption), parent);
}

QWidget* MakeMessageField(const ControlEntry& control, QWidget* parent) {
    auto* field = new QLineEdit(ToQt(control.caption), parent);
    field->setReadOnly(true);
    field->setAlignment(Qt::AlignCenter);
    field->hide();
    return field;
}

/// It covers what lies below, so that its own repainting does not ask the grid for anything.
QWidget* MakeProgressBar(const ControlEntry& /*control*/, QWidget* parent) {
    auto* bar = new QProgressBar(parent);
    bar->setTextVisible(false);
    bar->setAutoFillBackground(true);
    bar->hide();
    return bar;
}

using Maker = QWidget* (*)(const ControlEntry&, QWidget*);

const std::map<ControlKind, Maker>& Makers() {
    static const std::map<ControlKind, Maker> makers = {
        {ControlKind::Panel, MakePanel},
        {ControlKind::FaceButton, MakeFaceButton},
        {ControlKind::Button, MakeButton},
        {ControlKind::PasswordField, MakePasswordField},
        {ControlKind::PathField, MakePathField},
        {ControlKind::TableBox, MakeTableBox},
        {ControlKind::ProductList, MakeProductList},
        {ControlKind::OptionBox, MakeOptionBox},
        {ControlKind::MessageField, MakeMessageField},
        {ControlKind::ProgressBar, MakeProgressBar},
    };
    return makers;
}

void Describe(QWidget& widget, const ControlEntry& control) {
    widget.setObjectName(ToQt(ObjectName(control)));
    widget.setToolTip(ToQt(control.toolTip));
    widget.setAccessibleName(ToQt(control.accessibleName));
}

/// Room that a caption needs within its control.
int CaptionWidth(const QWidget& widget) {
    constexpr int kButtonBorder = 8;
    const auto* button = qobject_cast<const QPushButton*>(&widget);
    return button != nullptr ? button->fontMetrics().horizontalAdvance(button->text()) + kButtonBorder
                             : widget.sizeHint().width();
}

}  // namespace

FormControls::FormControls(QWidget& form, grid::ResultGrid& grid) {
    QWidget* before = nullptr;
    for (const ControlEntry& control : ControlTable()) {
        QWidget* parent = control.framed ? widgets_.front() : &form;
        QWidget* widget = control.kind == ControlKind::Grid ? new GridView(grid, parent)
                                                            : Makers().at(control.kind)(control, parent);
        Describe(*widget, control);
        if (before != nullptr) {
            QWidget::setTabOrder(before, widget);
        }
        before = widget;
        widgets_.push_back(widget);
    }
}

void FormControls::Place(const QSize& client) {
    const std::vector<TwipRect> places =
        FormLayout(client.width() * kTwipsPerPixel, client.height() * kTwipsPerPixel);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const TwipRect& place = places[i];
        widgets_[i]->setGeometry(Pixels(place.left), Pixels(place.top), Pixels(place.width),
                                 Pixels(place.height));
    }
}

void FormControls::SetFont(const QFont& font) {
    for (QWidget* widget : widgets_) {
        widget->setFont(font);
    }
}

bool FormControls::CaptionsFit() const {
    const auto controls = ControlTable();
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const bool captioned =
            controls[i].kind == ControlKind::Button || controls[i].kind == ControlKind::OptionBox;
        if (captioned && CaptionWidth(*widgets_[i]) > Pixels(controls[i].place.width)) {
            return false;
        }
    }
    return true;
}

void FormControls::FitFont() {
    for (int pixels = kDesignedPixels; pixels >= kSmallestPixels; --pixels) {
        SetFont(FormFont(pixels));
        if (CaptionsFit()) {
            break;
        }
    }
    Field("maketb").setFont(FormFont(kMessageFieldPixels));
}

}  // namespace tavrel::app
