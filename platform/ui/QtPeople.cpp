#include "platform/ui/QtPeople.h"

#include "foundation/Paths.h"
#include "platform/base/NativePath.h"
#include "platform/ui/FileFilter.h"
#include "platform/ui/InputGate.h"
#include "platform/ui/StatusWindow.h"
#include "platform/ui/Texts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QInputMethod>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTimer>
#include <QTreeView>

#include <utility>

using Torvane::Dialog::MFC::BoxAnswer;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxDefault;
using Torvane::Dialog::MFC::BoxIcon;
using Torvane::Dialog::MFC::CShowStatusDlg;
using Torvane::Dialog::MFC::IPeople;

namespace {

constexpr QSize c_pickerSize(760, 500);
constexpr int c_nPaintMilliseconds = 5;
constexpr qint64 c_nPaintInterval = 10;

int s_nPainting = 0;
int s_nInputStops = 0;
/// A handler that is called while painting doesn't start it anew.
bool s_bBarred = false;

struct SButton {
    BoxAnswer Answer;
    const char* szName;
    QString strText;
    QMessageBox::ButtonRole Role;
};

QList<SButton> ButtonsOf(BoxButtons buttons) {
    const SButton ok{BoxAnswer::Ok, "ok", UiTexts::c_strOk, QMessageBox::AcceptRole};
    const SButton cancel{BoxAnswer::Cancel, "cancel", UiTexts::c_strCancel, QMessageBox::RejectRole};
    const SButton yes{BoxAnswer::Yes, "yes", UiTexts::c_strYes, QMessageBox::YesRole};
    const SButton no{BoxAnswer::No, "no", UiTexts::c_strNo, QMessageBox::NoRole};
    // In this role it is not what Escape means: a box without Cancel waits for one of its buttons.
    const SButton plainNo{BoxAnswer::No, "no", UiTexts::c_strNo, QMessageBox::DestructiveRole};
    const SButton retry{BoxAnswer::Retry, "retry", UiTexts::c_strRetry, QMessageBox::AcceptRole};
    switch (buttons) {
    case BoxButtons::Ok:
        return {ok};
    case BoxButtons::OkCancel:
        return {ok, cancel};
    case BoxButtons::YesNo:
        return {yes, plainNo};
    case BoxButtons::YesNoCancel:
        return {yes, no, cancel};
    case BoxButtons::RetryCancel:
        return {retry, cancel};
    }
    return {ok};
}

/// A key still held down from the dialog before must not answer a question that nobody has read yet.
class CHeldKeyStop : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject*, QEvent* pEvent) override {
        if (pEvent->type() != QEvent::KeyPress && pEvent->type() != QEvent::KeyRelease)
            return false;
        const auto& key = static_cast<const QKeyEvent&>(*pEvent);
        if (pEvent->type() == QEvent::KeyPress)
            return key.isAutoRepeat() || (key.timestamp() != 0 && key.timestamp() == m_nReleased);
        m_nReleased = key.timestamp();
        return false;
    }

private:
    /// X repeats a key as a release and a press of one moment, and the toolkit doesn't always see the pair.
    quint64 m_nReleased = 0;
};

QMessageBox::Icon IconOf(BoxIcon icon) {
    switch (icon) {
    case BoxIcon::Question:
        return QMessageBox::Question;
    case BoxIcon::Information:
        return QMessageBox::Information;
    case BoxIcon::Warning:
        return QMessageBox::Warning;
    case BoxIcon::Stop:
        return QMessageBox::Critical;
    case BoxIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

/// A box with its buttons. The window under it may go meanwhile and take
/// it along.
struct SBox {
    SBox(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon, QWidget* pParent,
         BoxDefault byEnter = BoxDefault::First);

    /// What was pressed; nothing for whatever else ended it.
    std::optional<BoxAnswer> Run();

    QPointer<QMessageBox> pBox;
    QHash<QAbstractButton*, BoxAnswer> Answers;
    /// Closing, where the box may be closed, answers like the last button.
    BoxAnswer Closed = BoxAnswer::Ok;
};

SBox::SBox(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon,
           QWidget* pParent, BoxDefault byEnter)
    : pBox(new QMessageBox(IconOf(icon), strTitle, strText, QMessageBox::NoButton, pParent)) {
    pBox->setObjectName(QStringLiteral("messageBox"));
    pBox->setTextFormat(Qt::PlainText);
    auto* pHeldKeyStop = new CHeldKeyStop(pBox);
    pBox->installEventFilter(pHeldKeyStop);
    for (const SButton& button : ButtonsOf(buttons)) {
        QPushButton* pButton = pBox->addButton(button.strText, button.Role);
        pButton->setObjectName(QLatin1String(button.szName));
        pButton->installEventFilter(pHeldKeyStop);
        if (Answers.isEmpty() || byEnter == BoxDefault::Last)
            pBox->setDefaultButton(pButton);
        Answers.insert(pButton, button.Answer);
        Closed = button.Answer;
        if (buttons != BoxButtons::YesNo)
            pBox->setEscapeButton(pButton);
    }
}

std::optional<BoxAnswer> SBox::Run() {
    const CInputGate::CPause pause;
    pBox->exec();
    if (!pBox)
        return std::nullopt;
    const auto pressed = Answers.constFind(pBox->clickedButton());
    delete pBox;
    return pressed == Answers.constEnd() ? std::nullopt : std::optional(*pressed);
}

/// The folder from which something was taken last by a picker that was given none; the person's documents
/// before that.
QString& LastFolder() {
    static QString s_strFolder;
    if (!Torvane::File::IsFolder(s_strFolder)) {
        const QString strDocuments = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        s_strFolder = Platform::FromNative(QFileInfo(strDocuments).isDir() ? strDocuments : QDir::homePath());
    }
    return s_strFolder;
}

/// Room for each column as it is, and what is left for the names.
void FitColumns(QFileDialog& dialog) {
    auto* pFiles = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    if (pFiles == nullptr)
        return;
    QHeaderView& header = *pFiles->header();
    header.setStretchLastSection(false);
    for (int nColumn = 0; nColumn < header.count(); ++nColumn)
        header.setSectionResizeMode(nColumn,
                                    nColumn == 0 ? QHeaderView::Stretch : QHeaderView::ResizeToContents);
}

/// Runs a picker and gives what was picked. The window under it may go meanwhile and take the picker along.
std::optional<QString> Pick(QFileDialog* pNew, const QString& strFolder, const QString& strAccept,
                            const QString& strName) {
    const QPointer<QFileDialog> pDialog(pNew);
    if (!strFolder.isEmpty())
        pDialog->setDirectory(Platform::ToNative(strFolder));
    pDialog->setLabelText(QFileDialog::LookIn, UiTexts::c_strLookIn);
    pDialog->setLabelText(QFileDialog::FileName, strName);
    pDialog->setLabelText(QFileDialog::FileType, UiTexts::c_strFileType);
    pDialog->setLabelText(QFileDialog::Accept, strAccept);
    pDialog->setLabelText(QFileDialog::Reject, UiTexts::c_strCancel);
    // Wide enough for names, sizes and dates.
    pDialog->resize(c_pickerSize);
    FitColumns(*pDialog);
    // A kind of file says its endings in its own words.
    pDialog->setOption(QFileDialog::HideNameFilterDetails);
    const bool bAccepted = pDialog->exec() == QDialog::Accepted;
    if (!pDialog)
        return std::nullopt;
    const QStringList files = pDialog->selectedFiles();
    delete pDialog;
    if (!bAccepted || files.isEmpty())
        return std::nullopt;
    return Platform::FromNative(files.first());
}

/// The same for what exists: where no folder is named it begins beside what was picked last.
std::optional<QString> PickAgain(QFileDialog* pNew, const QString& strFolder, const QString& strAccept,
                                 const QString& strName) {
    auto picked = Pick(pNew, strFolder.isEmpty() ? LastFolder() : strFolder, strAccept, strName);
    if (picked && strFolder.isEmpty())
        LastFolder() = Torvane::File::ParentFolder(*picked);
    return picked;
}

/// Makes the folder that was typed where there is none yet.
class CNewFolderDialog : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

    void accept() override {
        const QStringList typed = selectedFiles();
        if (!typed.isEmpty() && !QFileInfo::exists(typed.first()))
            QDir().mkdir(typed.first());
        QFileDialog::accept();
    }
};

void SetUpFolders(QFileDialog& dialog) {
    dialog.setObjectName(QStringLiteral("folderDialog"));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
}

void ProcessEvents(QEventLoop::ProcessEventsFlags flags) {
    // Apart, since whoever paints all the time would keep the button that gives a step up from ever being
    // heard.
    static QElapsedTimer s_painted;
    static QElapsedTimer s_heard;
    QElapsedTimer& last = flags.testFlag(QEventLoop::ExcludeUserInputEvents) ? s_painted : s_heard;
    if (s_bBarred || (last.isValid() && last.elapsed() < c_nPaintInterval))
        return;
    s_bBarred = true;
    {
        const CQtPeople::CPainting painting;
        QCoreApplication::processEvents(flags, c_nPaintMilliseconds);
    }
    s_bBarred = false;
    last.start();
}

/// What the toolkit only excludes comes later, so all of it is taken and held back at the windows.
class CDroppedInput : public IPeople::CInputStop {
public:
    CDroppedInput() {
        // What she is composing was written before; the other program's window would end it meanwhile.
        QGuiApplication::inputMethod()->commit();
        QGuiApplication::inputMethod()->reset();
        ++s_nInputStops;
        m_gate.SetActive(true);
    }
    ~CDroppedInput() override {
        --s_nInputStops;
        // What has come since the last look, with what the display has not yet handed over.
        const CQtPeople::CPainting painting;
        QGuiApplication::sync();
        QCoreApplication::processEvents(QEventLoop::AllEvents, c_nPaintMilliseconds);
    }

private:
    CInputGate m_gate;
};

} // namespace

bool CQtPeople::IsKeepingPainting() {
    return s_nPainting > 0;
}

CQtPeople::CPainting::CPainting() {
    ++s_nPainting;
}

CQtPeople::CPainting::~CPainting() {
    --s_nPainting;
}

CQtPeople::CPaintInside::CPaintInside() : m_bBarred(std::exchange(s_bBarred, false)) {}

CQtPeople::CPaintInside::~CPaintInside() {
    s_bBarred = m_bBarred;
}

QWidget* CQtPeople::Parent() const {
    QWidget* pModal = QApplication::activeModalWidget();
    return pModal ? pModal : m_pParent.data();
}

BoxAnswer CQtPeople::Ask(const QString& strText, const QString& strTitle, BoxButtons buttons, BoxIcon icon,
                         BoxDefault byEnter) {
    SBox box(strText, strTitle, buttons, icon, Parent(), byEnter);
    return box.Run().value_or(box.Closed);
}

IPeople::YesNoAll CQtPeople::QueryYesNoAll(const QString& strText) {
    SBox box(strText, UiTexts::c_strQuestionTitle, BoxButtons::YesNo, BoxIcon::Question, Parent());
    auto* pAll = new QCheckBox(UiTexts::c_strForAll, box.pBox);
    pAll->setObjectName(QStringLiteral("forAll"));
    bool bAll = false;
    QObject::connect(pAll, &QCheckBox::toggled, [&bAll](bool bOn) { bAll = bOn; });
    box.pBox->setCheckBox(pAll);
    // Stands for Escape and closing, which answer for this once.
    QPushButton* pClosed = box.pBox->addButton(UiTexts::c_strCancel, QMessageBox::RejectRole);
    pClosed->hide();
    box.pBox->setEscapeButton(pClosed);
    const std::optional<BoxAnswer> answer = box.Run();
    return answer ? YesNoAll{*answer == BoxAnswer::Yes, bAll} : YesNoAll{};
}

std::unique_ptr<CShowStatusDlg> CQtPeople::OpenStatus() {
    return std::make_unique<CStatusWindow>(Parent(), &ProcessEvents);
}

CShowStatusDlg* CQtPeople::GetStatus() {
    return CStatusWindow::GetLast();
}

void CQtPeople::KeepPainting() {
    ProcessEvents(s_nInputStops > 0 ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
}

std::unique_ptr<IPeople::CInputStop> CQtPeople::StopInput() {
    return std::make_unique<CDroppedInput>();
}

std::optional<QString> CQtPeople::PickOpenFile(const QString& strTitle, const QString& strFolder,
                                               const QString& strFilter) {
    auto* pDialog = new QFileDialog(Parent(), strTitle);
    pDialog->setObjectName(QStringLiteral("fileDialog"));
    pDialog->setFileMode(QFileDialog::ExistingFile);
    pDialog->setNameFilters(FileFilter::ToNameFilters(strFilter));
    return PickAgain(pDialog, strFolder, UiTexts::c_strOpen, UiTexts::c_strFileName);
}

std::optional<QString> CQtPeople::PickSaveFile(const QString& strTitle, const QString& strName) {
    auto* pDialog = new QFileDialog(Parent(), strTitle);
    pDialog->setObjectName(QStringLiteral("fileDialog"));
    pDialog->setAcceptMode(QFileDialog::AcceptSave);
    pDialog->setNameFilters(FileFilter::ToNameFilters(QString()));
    const QString strFolder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    pDialog->setDirectory(QFileInfo(strFolder).isDir() ? strFolder : QDir::homePath());
    pDialog->selectFile(strName);
    return Pick(pDialog, QString(), UiTexts::c_strSave, UiTexts::c_strFileName);
}

std::optional<QString> CQtPeople::PickFolder(const QString& strPrompt, const QString& strFolder) {
    auto* pDialog = new QFileDialog(Parent(), strPrompt);
    SetUpFolders(*pDialog);
    return PickAgain(pDialog, strFolder, UiTexts::c_strChoose, UiTexts::c_strFolderName);
}

std::optional<QString> CQtPeople::PickNewFolder(const QString& strPrompt, const QString& strFolder,
                                                const QString& strName) {
    auto* pDialog = new CNewFolderDialog(Parent(), strPrompt);
    SetUpFolders(*pDialog);
    // After the folder has been entered, which clears the field.
    QTimer::singleShot(0, pDialog, [pDialog, strName] {
        auto* pField = pDialog->findChild<QLineEdit*>();
        if (pField != nullptr)
            pField->setText(strName);
    });
    return Pick(pDialog, strFolder, UiTexts::c_strChoose, UiTexts::c_strFolderName);
}
