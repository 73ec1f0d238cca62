#include "companions/docexport/ui/ExportWindow.h"

#include "companions/docexport/Texts.h"
#include "platform/base/FileOpening.h"
#include "platform/base/NativePath.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nWidth = 480;
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

} // namespace

CExportWindow::CExportWindow(const QString& strProjectPath, const QString& strCourse,
                             const PictureTakerMaker& pictures)
    // The application that waits for it paints, but takes no input: this window must not be lost behind it.
    : QDialog(nullptr,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint),
      m_strProjectPath(strProjectPath), m_pictures(pictures), m_pIcon(new QLabel),
      m_pHead(MakeLabel(u"head"_s)), m_pForm(new QWidget), m_pButtons(new QDialogButtonBox) {
    setObjectName(u"CExportWindow"_s);
    setWindowTitle(DocText::c_strTitle);
    m_pHead->setText(DocText::c_strIntroduction.arg(strCourse));
    m_pIcon->hide();
    MakeForm();
    MakeProgress();
    m_pStart = m_pButtons->addButton(DocText::c_strStart, QDialogButtonBox::AcceptRole);
    m_pCancel = m_pButtons->addButton(DocText::c_strCancel, QDialogButtonBox::RejectRole);
    m_pStart->setObjectName(u"start"_s);
    m_pCancel->setObjectName(u"cancel"_s);
    m_pStart->setDefault(true);
    connect(m_pButtons, &QDialogButtonBox::accepted, this, &CExportWindow::Accept);
    connect(m_pButtons, &QDialogButtonBox::rejected, this, &CExportWindow::reject);

    auto* pHead = new QHBoxLayout;
    pHead->setSpacing(c_nMargin);
    pHead->addWidget(m_pIcon, 0, Qt::AlignTop);
    pHead->addWidget(m_pHead, 1);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pLayout->setSpacing(c_nSpacing);
    pLayout->addLayout(pHead);
    for (QWidget* pWidget : {m_pForm, static_cast<QWidget*>(m_pBar), static_cast<QWidget*>(m_pDetails),
                             static_cast<QWidget*>(m_pReportLabel), static_cast<QWidget*>(m_pReport)})
        pLayout->addWidget(pWidget);
    pLayout->addSpacing(c_nSpacing);
    pLayout->addWidget(m_pButtons);
    setMinimumWidth(c_nWidth);
    m_pTarget->setFocus();
}

CExportWindow::~CExportWindow() {
    m_progress.bCancelled = true;
    if (m_worker.joinable())
        m_worker.join();
}

void CExportWindow::MakeForm() {
    m_pTarget = new QLineEdit(DefaultTarget(m_strProjectPath));
    m_pTarget->setObjectName(u"target"_s);
    m_pTarget->setAccessibleName(DocText::c_strTarget.left(DocText::c_strTarget.indexOf(u'(')));
    auto* pLabel = new QLabel(DocText::c_strTarget);
    pLabel->setBuddy(m_pTarget);
    auto* pBrowse = new QPushButton(DocText::c_strBrowse);
    pBrowse->setObjectName(u"browse"_s);
    pBrowse->setAutoDefault(false);
    connect(pBrowse, &QPushButton::clicked, this, &CExportWindow::Browse);
    auto* pLine = new QHBoxLayout(m_pForm);
    pLine->setContentsMargins(0, 0, 0, 0);
    pLine->addWidget(pLabel);
    pLine->addWidget(m_pTarget, 1);
    pLine->addWidget(pBrowse);
}

void CExportWindow::MakeProgress() {
    m_pBar = new QProgressBar;
    m_pBar->setObjectName(u"progress"_s);
    m_pBar->setAccessibleName(DocText::c_strProgress);
    m_pBar->setTextVisible(false);
    m_pDetails = MakeLabel(u"details"_s);
    m_pReportLabel = new QLabel(DocText::c_strReport);
    m_pReport = new QPlainTextEdit;
    m_pReport->setObjectName(u"report"_s);
    m_pReport->setReadOnly(true);
    m_pReport->setTabChangesFocus(true);
    m_pReport->setAccessibleName(DocText::c_strReport.left(DocText::c_strReport.indexOf(u'(')));
    m_pReport->setMinimumHeight(m_pReport->fontMetrics().lineSpacing() * c_nReportLines);
    m_pReportLabel->setBuddy(m_pReport);
    for (QWidget* pWidget : {static_cast<QWidget*>(m_pBar), static_cast<QWidget*>(m_pDetails),
                             static_cast<QWidget*>(m_pReportLabel), static_cast<QWidget*>(m_pReport)})
        pWidget->hide();
}

DocRequest CExportWindow::Request() const {
    QString strTarget = m_pTarget->text().trimmed();
    if (!strTarget.isEmpty() && !strTarget.endsWith(".docx"_L1, Qt::CaseInsensitive))
        strTarget += ".docx"_L1;
    // A bare name goes beside the course.
    const QDir beside(QFileInfo(DefaultTarget(m_strProjectPath)).path());
    return {m_strProjectPath, QDir::cleanPath(beside.absoluteFilePath(strTarget))};
}

void CExportWindow::Browse() {
    QFileDialog dialog(this, DocText::c_strTitle, Request().TargetPath, DocText::c_strFilter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(u"docx"_s);
    // The question comes when the export begins, whichever way the name was given.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (dialog.exec() == QDialog::Accepted)
        m_pTarget->setText(dialog.selectedFiles().value(0));
    m_pTarget->setFocus();
}

bool CExportWindow::MayReplace(const QString& strTarget) {
    if (!QFileInfo::exists(strTarget))
        return true;
    QMessageBox box(QMessageBox::Question, DocText::c_strTitle, DocText::c_strReplace.arg(strTarget),
                    QMessageBox::Yes | QMessageBox::No, this);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void CExportWindow::Warn(const QString& strText) {
    QMessageBox box(QMessageBox::Warning, DocText::c_strTitle, strText, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void CExportWindow::Start() {
    const DocRequest request = Request();
    if (const QString strFault = FaultOfTarget(request); !strFault.isEmpty()) {
        Warn(strFault);
        m_pTarget->setFocus();
        m_pTarget->selectAll();
        return;
    }
    if (!MayReplace(request.TargetPath))
        return;
    m_pTarget->setText(request.TargetPath);
    m_eState = EState::Exporting;
    m_pForm->hide();
    m_pStart->hide();
    m_pBar->show();
    m_pDetails->show();
    // An Enter too many must not stop it.
    m_pCancel->setDefault(false);
    m_pCancel->setAutoDefault(false);
    auto* pTimer = new QTimer(this);
    connect(pTimer, &QTimer::timeout, this, &CExportWindow::ShowProgress);
    pTimer->start(c_nRefreshMilliseconds);
    ShowProgress();
    m_worker = std::thread([this, request] {
        const DocOutcome outcome = ExportDocument(request, m_pictures, m_progress);
        QMetaObject::invokeMethod(
            this, [this, outcome] { End(outcome); }, Qt::QueuedConnection);
    });
}

void CExportWindow::reject() {
    if (m_eState != EState::Exporting)
        return done(m_bDone ? Accepted : Rejected);
    m_progress.bCancelled = true;
    ShowProgress();
}

void CExportWindow::ShowProgress() {
    if (m_eState != EState::Exporting)
        return;
    const bool bKnown = m_progress.Stage == DocProgress::EStage::ReadingNodes && m_progress.nTotal > 0;
    m_pBar->setRange(0, bKnown ? int(m_progress.nTotal) : 0);
    if (bKnown)
        m_pBar->setValue(m_progress.nNodes);
    m_pDetails->setText(DescribeProgress(m_progress));
    m_pCancel->setEnabled(!m_progress.bCancelled && m_progress.Stage != DocProgress::EStage::Saving);
}

void CExportWindow::End(const DocOutcome& outcome) {
    m_eState = EState::Ended;
    m_bDone = outcome.End == DocOutcome::EEnd::Done;
    if (outcome.End == DocOutcome::EEnd::Cancelled)
        return QDialog::reject();
    const auto icon = m_bDone ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxCritical;
    const int nSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    m_pIcon->setPixmap(style()->standardIcon(icon, nullptr, this).pixmap(nSize));
    m_pIcon->show();
    m_pHead->setText(outcome.Text);
    m_pBar->hide();
    m_pDetails->hide();
    if (!outcome.Notes.isEmpty()) {
        m_pReport->setPlainText(outcome.Notes.join(u'\n'));
        m_pReportLabel->show();
        m_pReport->show();
    }
    if (m_bDone) {
        m_pStart->setText(DocText::c_strOpen);
        m_pStart->setAutoDefault(false);
        m_pStart->show();
    }
    m_pCancel->setText(DocText::c_strClose);
    m_pCancel->setEnabled(true);
    m_pCancel->setDefault(true);
    m_pCancel->setFocus();
    adjustSize();
}

void CExportWindow::Accept() {
    if (!m_bDone)
        return Start();
    if (!Platform::OpenWithVerb(Platform::FromNative(m_pTarget->text())))
        Warn(DocText::c_strNotOpened.arg(m_pTarget->text()));
}
