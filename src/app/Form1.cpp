#include "app/Form1.h"

#include <algorithm>

#include <QWindow>

#include "app/AppIcon.h"
#include "app/logic/Caption.h"
#include "app/logic/FormLayout.h"
#include "app/logic/GridCommands.h"
#include "text/Error.h"

namespace tavrel::app {

/// The controls as the commands take them.
struct Form1::Adapters {
    explicit Adapters(FormControls& controls)
        : paths{LineEditText(controls.Field("txtDBPath", 0)), LineEditText(controls.Field("txtDBPath", 1))},
          passwords{LineEditText(controls.Field("txtPwd", 0)), LineEditText(controls.Field("txtPwd", 1))},
          tables{ComboText(controls.Box("cmbTblName", 0)), ComboText(controls.Box("cmbTblName", 1))},
          options{CheckBoxOption(controls.Option(0)), CheckBoxOption(controls.Option(1)),
                  CheckBoxOption(controls.Option(2))},
          bars{ProgressBarView(controls.Bar(0)), ProgressBarView(controls.Bar(1))},
          maketb(controls.Field("maketb")) {}

    workbench::WorkbenchControls Wire(platform::Pointer& pointer, platform::MessageBox& messages,
                                      grid::ResultGrid& grid) {
        return {.txtDBPath = {&paths[0], &paths[1]},
                .txtPwd = {&passwords[0], &passwords[1]},
                .cmbTblName = {&tables[0], &tables[1]},
                .Check1 = {&options[0], &options[1], &options[2]},
                .ProgressBar1 = {&bars[0], &bars[1]},
                .maketb = &maketb,
                .pointer = &pointer,
                .messages = &messages,
                .spList = &grid,
                .AppCode = {}};
    }

    std::array<LineEditText, 2> paths;
    std::array<LineEditText, 2> passwords;
    std::array<ComboText, 2> tables;
    std::array<CheckBoxOption, 3> options;
    std::array<ProgressBarView, 2> bars;
    MessageFieldView maketb;
};

Form1::Form1(FormServices services)
    : services_(std::move(services)),
      ownMessages_(*this),
      ownFiles_(*this),
      messages_(services_.messages != nullptr ? *services_.messages : ownMessages_),
      files_(services_.files != nullptr ? *services_.files : ownFiles_),
      controls_(*this, grid_),
      adapters_(std::make_unique<Adapters>(controls_)),
      workbench_(adapters_->Wire(pointer_, messages_, grid_)),
      run_(workbench_, services_.copies),
      keyCommands_(*this, [this](std::int16_t key, std::int16_t shift) { Form_KeyDown(key, shift); }),
      settings_(services_.settings, messages_),
      opener_(messages_),
      desk_({controls_, grid_, run_, files_, messages_,
             [this](const std::string& path) { OpenDatabase(path); }}) {
    setObjectName(QStringLiteral("Form1"));
    setWindowIcon(AppIcon());
    controls_.FitFont();
    resize(Pixels(kDesignedClient.width), Pixels(kDesignedClient.height));
    controls_.Place(size());
    ConnectControls();
}

Form1::~Form1() {
    delete &controls_.Grid();  // it watches grid_, which is gone when the other children go
}

bool Form1::Form_Load() {
    if (services_.runAutoUpdate && !services_.runAutoUpdate(messages_)) {
        return false;
    }
    InitGrid(grid_);
    setWindowTitle(ToQt(WindowCaption(TAVREL_FILE_VERSION)));
    LockCells(grid_);
    try {
        RestoreSettings();
    } catch (const Error& error) {
        settings_.Tell(error);
    }
    return true;
}

/// The handlers do nothing while this fills the controls: the window is not visible yet.
void Form1::RestoreSettings() {
    const FormSettings& stored = settings_.Stored();
    for (int side = 0; side < 2; ++side) {
        controls_.Field("txtDBPath", side).setText(ToQt(stored.Read(Entry(Remembered::PathA, side))));
    }
    for (int side = 0; side < 2; ++side) {
        controls_.Box("cmbTblName", side).setEditText(ToQt(stored.Read(Entry(Remembered::TableA, side))));
    }
    for (int side = 0; side < 2; ++side) {
        controls_.Field("txtPwd", side).setText(ToQt(stored.Read(Entry(Remembered::PasswordA, side))));
    }
    controls_.Box("cmbApp").setCurrentIndex(0);
    for (int i = 0; i < 3; ++i) {
        controls_.Option(i).setChecked(stored.ReadNumber(Entry(Remembered::Option0, i)) != 0);
    }
}

void Form1::ConnectSide(int index) {
    connect(&controls_.Field("txtDBPath", index), &QLineEdit::textChanged, this,
            [=, this] { txtDBPath_Change(index); });
    connect(&controls_.Field("txtPwd", index), &QLineEdit::textChanged, this,
            [=, this] { txtPwd_Change(index); });
    connect(&controls_.Box("cmbTblName", index), &QComboBox::editTextChanged, this,
            [=, this] { cmbTblName_Change(index); });
    connect(&controls_.Button("cmdDB", index), &QPushButton::clicked, this,
            [=, this] { cmdDB_Click(index); });
    connect(&controls_.Button("cmdAccess", index), &QPushButton::clicked, this,
            [=, this] { cmdAccess_Click(index); });
    connect(&controls_.Button("cmdCompact", index), &QPushButton::clicked, this,
            [=, this] { cmdCompact_Click(index); });
    connect(&controls_.Button("cmdMove", index), &QPushButton::clicked, this,
            [=, this] { cmdMove_Click(static_cast<std::int16_t>(index)); });
}

void Form1::ConnectControls() {
    ConnectSide(0);
    ConnectSide(1);
    connect(&controls_.Button("cmdComp"), &QPushButton::clicked, this, [this] { cmdComp_Click(); });
    // Choosing the item that is chosen already counts too.
    connect(&controls_.Box("cmbApp"), &QComboBox::currentIndexChanged, this, [this] { cmbApp_Click(); });
    connect(&controls_.Box("cmbApp"), &QComboBox::activated, this, [this] { cmbApp_Click(); });
    for (int i = 0; i < 3; ++i) {
        connect(&controls_.Option(i), &QCheckBox::toggled, this, [=, this] { Check1_Click(i); });
    }
}

void Form1::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Form_Resize();
}

void Form1::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Form_Resize();
}

/// Some desktops put the frame around the window when it is already shown: its size counts from here on.
void Form1::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange) {
        Form_Resize();
    }
}

void Form1::closeEvent(QCloseEvent* event) {
    settings_.Flush();
    QWidget::closeEvent(event);
}

void Form1::Form_Resize() {
    if (isMinimized()) {
        return;
    }
    const QMargins frame = windowHandle() != nullptr ? windowHandle()->frameMargins() : QMargins();
    const QSize least = QSize(Pixels(kSmallestWindow), Pixels(kSmallestWindow)).shrunkBy(frame);
    if (minimumSize() != least) {
        setMinimumSize(least);
    }
    controls_.Place(size());
}

}  // namespace tavrel::app
