// Where the controls stand and whether everything in them can be read, at the scaling the test runs under.
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QStyle>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>

#include "app/FormFixture.h"
#include "app/logic/FormLayout.h"

namespace tavrel::app {
namespace {

class FormPlaces : public FormFixture {
  protected:
    QWidget& Control(const ControlEntry& control) { return Find<QWidget>(ObjectName(control).c_str()); }
    QRect PlaceInForm(const ControlEntry& control) {
        QWidget& widget = Control(control);
        return {widget.mapTo(form_.get(), QPoint(0, 0)), widget.size()};
    }
};

/// Controls that lie over others on purpose.
bool Floats(const ControlEntry& control) {
    return control.kind == ControlKind::Panel || control.kind == ControlKind::MessageField ||
           control.kind == ControlKind::ProgressBar;
}

TEST_F(FormPlaces, StartAsDesigned) {
    Open();
    EXPECT_EQ(form_->size(), QSize(871, 710));
    EXPECT_EQ(Path(0).geometry(), QRect(225, 9, 354, 19));
    EXPECT_EQ(Find<QWidget>("cmdComp").geometry(), QRect(3, 9, 79, 61));
    EXPECT_EQ(Find<QWidget>("maketb").geometry(), QRect(268, 128, 428, 35));
    EXPECT_FALSE(Find<QWidget>("maketb").isVisible() || Find<QWidget>("ProgressBar1_0").isVisible());
}

TEST_F(FormPlaces, NothingOverlapsAtAnySize) {
    Open();
    for (const QSize size : {QSize(333, 333), QSize(400, 600), QSize(517, 400), QSize(560, 400),
                             QSize(640, 480), QSize(871, 710), QSize(1920, 1080)}) {
        form_->resize(size);
        ASSERT_TRUE(QTest::qWaitFor([&] { return form_->size() == size; }));
        std::vector<QRect> places;
        for (const ControlEntry& control : ControlTable()) {
            if (Floats(control)) {
                continue;
            }
            const QRect place = PlaceInForm(control);
            EXPECT_GT(place.width(), 0);
            for (const QRect& other : places) {
                EXPECT_FALSE(place.intersects(other)) << ObjectName(control) << " at " << size.width();
            }
            places.push_back(place);
        }
        EXPECT_GE(Path(0).width(), Path(0).fontMetrics().horizontalAdvance("C:\\dbs\\"));
    }
}

TEST_F(FormPlaces, TheWindowSnapsBackTo5000Twips) {
    Open();
    form_->resize(100, 50);
    EXPECT_TRUE(QTest::qWaitFor([&] { return form_->frameGeometry().size() == QSize(333, 333); }))
        << form_->frameGeometry().width() << " x " << form_->frameGeometry().height();
}

/// Room for a text within its control, as the style draws it.
QRect TextRoom(const QWidget& widget) {
    QStyle& style = *widget.style();
    if (const auto* button = qobject_cast<const QPushButton*>(&widget)) {
        return button->rect().adjusted(2, 1, -2, -1);
    }
    if (const auto* box = qobject_cast<const QCheckBox*>(&widget)) {
        QStyleOptionButton option;
        option.initFrom(box);
        return style.subElementRect(QStyle::SE_CheckBoxContents, &option, box);
    }
    if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
        QStyleOptionComboBox option;
        option.initFrom(list);
        option.editable = list->isEditable();
        return style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, list);
    }
    QStyleOptionFrame option;
    option.initFrom(&widget);
    option.lineWidth = style.pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &widget);
    return style.subElementRect(QStyle::SE_LineEditContents, &option, &widget);
}

TEST_F(FormPlaces, EveryTextHasRoom) {
    Open();
    const auto expectRoom = [this](const char* name, const QString& text) {
        const auto& widget = Find<QWidget>(name);
        const QFontMetrics metrics(widget.font());
        const QRect room = TextRoom(widget);
        EXPECT_LE(metrics.horizontalAdvance(text), room.width()) << name << ": " << FromQt(text);
        EXPECT_LE(metrics.tightBoundingRect(text).height(), room.height()) << name;
        EXPECT_GE(widget.font().pixelSize(), 11) << name;
    };
    for (const ControlEntry& control : ControlTable()) {
        if (!control.caption.empty()) {
            expectRoom(ObjectName(control).c_str(), ToQt(control.caption));
        }
    }
    for (int i = 0; i < 5; ++i) {
        expectRoom("cmbApp", Find<QComboBox>("cmbApp").itemText(i));
    }
    expectRoom("txtDBPath_0", "C:\\고객\\gjpqy.mdb");
    expectRoom("txtPwd_0", "**********");
    expectRoom("cmbTblName_0", "거래처 목록");
}

}  // namespace
}  // namespace tavrel::app
