#include "companions/common/ui/TaskWindow.h"

#include "companions/common/ui/Texts.h"
#include "platform/base/FileOpening.h"
#include "platform/base/NativePath.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nWidth = 560;
/// Half the height of the application's status window, and a little air.
constexpr int c_nBelowMiddle = 80;
constexpr int c_nRefreshMilliseconds = 100;
constexpr int c_nMargin = 16;
constexpr int c_nSpacing = 10;
constexpr int c_nReportLines = 8;

QLabel* MakeLabel(const QString& strName) {
    auto* pLabel = new QLabel;
    pLabel->setObjectName(strName);
    // What a course says must not be taken for markup.
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setWordWrap(true);
    return pLabel;
}

/// The text of a label without its mnemonic, for those who hear it.
QString Spoken(const QString& strLabel) {
    return strLabel.left(strLabel.indexOf(u'('));
}

} // namespace

CTaskWindow::CTaskWindow(const TaskTexts& texts, std::unique_ptr<ITask> pTask, const QString& strPlace)
    // The application that waits for it paints, but takes no input: this window must not be lost behind it.
    : QDialog(nullptr,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint),
      m_texts(texts), m_pTask(std::move(pTask)), m_pTimer(new QTimer(this)), m_pIcon(new QLabel),
      m_pHead(MakeLabel(u"head"_s)), m_pForm(new QWidget), m_pButtons(new QDialogButtonBox) {
    setObjectName(u"CTaskWindow"_s);
    setWindowTitle(m_texts.Title);
    m_pHead->setText(m_texts.Introduction);
    m_pIcon->hide();
    MakeForm(strPlace);
    MakeProgress();
    m_pCopy = m_pButtons->addButton(CompanionText::c_strCopy, QDialogButtonBox::ActionRole);
    m_pStart = m_pButtons->addButton(m_texts.Start, QDialogButtonBox::AcceptRole);
    m_pCancel = m_pButtons->addButton(CompanionText::c_strCancel, QDialogButtonBox::RejectRole);
    m_pCopy->setObjectName(u"copy"_s);
    m_pStart->setObjectName(u"start"_s);
    m_pCancel->setObjectName(u"cancel"_s);
    m_pCopy->setAutoDefault(false);
    m_pCopy->hide();
    connect(m_pTimer, &QTimer::timeout, this, &CTaskWindow::ShowProgress);
    connect(m_pCopy, &QPushButton::clicked, this, &CTaskWindow::CopyReport);
    connect(m_pButtons, &QDialogButtonBox::accepted, this, &CTaskWindow::Accept);
    connect(m_pButtons, &QDialogButtonBox::rejected, this, &CTaskWindow::reject);
    LayOut();
    // Only within its window is it also the default when the focus comes back from another button.
    m_pStart->setDefault(true);
    m_pPlace->setFocus();
}

CTaskWindow::~CTaskWindow() {
    m_pTask->Cancel();
    if (m_worker.joinable())
        m_worker.join();
}

void CTaskWindow::MakeForm(const QString& strPlace) {
    m_pPlace = new QLineEdit(strPlace);
    m_pPlace->setObjectName(u"target"_s);
    m_pPlace->setAccessibleName(Spoken(m_texts.Place));
    auto* pLabel = new QLabel(m_texts.Place);
    pLabel->setBuddy(m_pPlace);
    auto* pBrowse = new QPushButton(CompanionText::c_strBrowse);
    pBrowse->setObjectName(u"browse"_s);
    pBrowse->setAutoDefault(false);
    connect(pBrowse, &QPushButton::clicked, this, &CTaskWindow::Browse);
    auto* pLine = new QHBoxLayout(m_pForm);
    pLine->setContentsMargins(0, 0, 0, 0);
    pLine->addWidget(pLabel);
    pLine->addWidget(m_pPlace, 1);
    pLine->addWidget(pBrowse);
}

void CTaskWindow::MakeProgress() {
    m_pBar = new QProgressBar;
    m_pBar->setObjectName(u"progress"_s);
    m_pBar->setAccessibleName(m_texts.Progress);
    m_pBar->setTextVisible(false);
    m_pDetails = MakeLabel(u"details"_s);
    m_pReportLabel = new QLabel;
    m_pReport = new QPlainTextEdit;
    m_pReport->setObjectName(u"report"_s);
    m_pReport->setReadOnly(true);
    m_pReport->setTabChangesFocus(true);
    m_pReport->setAccessibleName(Spoken(CompanionText::c_strReport));
    m_pReport->setMinimumHeight(m_pReport->fontMetrics().lineSpacing() * c_nReportLines);
    m_pReportLabel->setBuddy(m_pReport);
    for (QWidget* pWidget : {static_cast<QWidget*>(m_pBar), static_cast<QWidget*>(m_pDetails),
                             static_cast<QWidget*>(m_pReportLabel), static_cast<QWidget*>(m_pReport)})
        pWidget->hide();
}

void CTaskWindow::LayOut() {
    auto* pHead = new QHBoxLayout;
    pHead->setSpacing(c_nMargin);
    pHead->addWidget(m_pIcon, 0, Qt::AlignTop);
    pHead->addWidget(m_pHead, 1, Qt::AlignTop);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pLayout->setSpacing(c_nSpacing);
    pLayout->addLayout(pHead);
    for (QWidget* pWidget : {m_pForm, static_cast<QWidget*>(m_pBar), static_cast<QWidget*>(m_pDetails),
                             static_cast<QWidget*>(m_pReportLabel)})
        pLayout->addWidget(pWidget);
    pLayout->addWidget(m_pReport, 1);
    pLayout->addSpacing(c_nSpacing);
    pLayout->addWidget(m_pButtons);
    setMinimumWidth(c_nWidth);
}

void CTaskWindow::showEvent(QShowEvent* pEvent) {
    QDialog::showEvent(pEvent);
    if (pEvent->spontaneous())
        return;
    Fit();
    const QRect place = screen()->availableGeometry();
    const int nTop = qMin(place.center().y() + c_nBelowMiddle, place.bottom() - height() - c_nBelowMiddle);
    move(place.center().x() - width() / 2, nTop);
}

void CTaskWindow::Browse() {
    const QString strPicked = m_pTask->Browse(this, m_pTask->Complete(m_pPlace->text()));
    if (!strPicked.isEmpty())
        m_pPlace->setText(strPicked);
    m_pPlace->setFocus();
}

void CTaskWindow::Warn(const QString& strText) {
    QMessageBox box(QMessageBox::Warning, m_texts.Title, strText, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

bool CTaskWindow::MayBegin(const QString& strPlace) {
    if (const QString strFault = m_pTask->FaultOf(strPlace); !strFault.isEmpty()) {
        Warn(strFault);
        m_pPlace->setFocus();
        m_pPlace->selectAll();
        return false;
    }
    const QString strQuestion = m_pTask->QuestionFor(strPlace);
    if (strQuestion.isEmpty())
        return true;
    QMessageBox box(QMessageBox::Question, m_texts.Title, strQuestion, QMessageBox::Yes | QMessageBox::No,
                    this);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void CTaskWindow::Start() {
    const QString strPlace = m_pTask->Complete(m_pPlace->text());
    if (!MayBegin(strPlace))
        return;
    if (m_worker.joinable())
        m_worker.join();
    m_pTask->Prepare();
    m_pPlace->setText(strPlace);
    m_eState = EState::Working;
    m_pIcon->hide();
    m_pHead->setText(m_texts.Introduction);
    m_pCancel->setText(CompanionText::c_strCancel);
    m_pForm->hide();
    m_pStart->hide();
    m_pBar->show();
    m_pDetails->show();
    Fit();
    // An Enter too many must not stop it.
    m_pCancel->setDefault(false);
    m_pCancel->setAutoDefault(false);
    m_pTimer->start(c_nRefreshMilliseconds);
    ShowProgress();
    m_worker = std::thread([this, strPlace] {
        const TaskOutcome outcome = m_pTask->Work(strPlace);
        QMetaObject::invokeMethod(
            this, [this, outcome] { End(outcome); }, Qt::QueuedConnection);
    });
}

void CTaskWindow::reject() {
    if (m_eState != EState::Working)
        return done(m_eEnd == TaskOutcome::EEnd::Done ? Accepted : Rejected);
    m_pTask->Cancel();
    ShowProgress();
}

void CTaskWindow::ShowProgress() {
    if (m_eState != EState::Working)
        return;
    const TaskProgress progress = m_pTask->Progress();
    m_pBar->setRange(0, progress.nTotal);
    if (progress.nTotal > 0)
        m_pBar->setValue(progress.nDone);
    m_pDetails->setText(progress.Text);
    m_pCancel->setEnabled(progress.bMayCancel);
}

void CTaskWindow::End(const TaskOutcome& outcome) {
    m_pTimer->stop();
    m_eState = EState::Ended;
    m_eEnd = outcome.End;
    if (outcome.End == TaskOutcome::EEnd::Cancelled)
        return QDialog::reject();
    ShowOutcome(outcome);
    if (outcome.End == TaskOutcome::EEnd::Failed)
        AskAgain();
    Fit();
}

void CTaskWindow::AskAgain() {
    m_eState = EState::Asking;
    m_pForm->show();
    m_pStart->show();
    m_pStart->setDefault(true);
    m_pCancel->setAutoDefault(true);
    m_pPlace->setFocus();
    m_pPlace->selectAll();
}

void CTaskWindow::ShowOutcome(const TaskOutcome& outcome) {
    const bool bDone = m_eEnd == TaskOutcome::EEnd::Done;
    const auto icon = bDone ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxCritical;
    const int nSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    m_pIcon->setPixmap(style()->standardIcon(icon, nullptr, this).pixmap(nSize));
    m_pIcon->show();
    m_pHead->setText(outcome.Text);
    m_pHead->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pBar->hide();
    m_pDetails->hide();
    if (!outcome.Notes.isEmpty()) {
        m_pReportLabel->setText(CompanionText::c_strReportCount.arg(outcome.Notes.size()));
        m_pReport->setPlainText(outcome.Notes.join(u'\n'));
        m_pReportLabel->show();
        m_pReport->show();
        m_pCopy->show();
    }
    if (bDone) {
        m_pStart->setText(m_texts.Open);
        m_pStart->setAutoDefault(false);
        m_pStart->show();
    }
    m_pCancel->setText(CompanionText::c_strClose);
    m_pCancel->setEnabled(true);
    m_pCancel->setDefault(true);
    m_pCancel->setFocus();
}

/// A window does not grow by itself with lines that a text breaks into, and as high as its labels would like
/// to be they leave it half empty.
void CTaskWindow::Fit() {
    layout()->activate();
    resize(width(), layout()->totalHeightForWidth(width()));
}

void CTaskWindow::CopyReport() {
    QGuiApplication::clipboard()->setText(m_pHead->text() + u'\n' + m_pReport->toPlainText() + u'\n');
}

void CTaskWindow::Accept() {
    if (m_eState == EState::Asking)
        return Start();
    if (m_eEnd != TaskOutcome::EEnd::Done)
        return;
    // What it opens must not come up behind it. Not by the widget's own flag, which would hide and so end it.
    windowHandle()->setFlag(Qt::WindowStaysOnTopHint, false);
    if (!Platform::OpenWithVerb(Platform::FromNative(m_pTask->Result())))
        Warn(m_texts.NotOpened.arg(m_pTask->Result()));
}
