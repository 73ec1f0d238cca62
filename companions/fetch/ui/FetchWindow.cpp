#include "companions/fetch/ui/FetchWindow.h"

#include "companions/fetch/FetchRun.h"
#include "companions/fetch/Texts.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include <initializer_list>

namespace {

constexpr int c_nWidth = 400;
constexpr int c_nRefreshMilliseconds = 100;
/// A small template is there, or a fault, before one has seen that anything happened.
constexpr int c_nReadMilliseconds = 1000;
constexpr int c_nBarSteps = 1000;
constexpr int c_nMargin = 16;
constexpr int c_nSpacing = 12;

QLabel* MakeLabel(const QString& strName) {
    auto* pLabel = new QLabel;
    pLabel->setObjectName(strName);
    // What a server or an archive says must not be taken for markup.
    pLabel->setTextFormat(Qt::PlainText);
    pLabel->setWordWrap(true);
    pLabel->setFixedWidth(c_nWidth);
    return pLabel;
}

} // namespace

CFetchWindow::CFetchWindow(const FetchRequest& request, const FetchLimits& limits)
    // The application that waits for it paints, but takes no input: this window must not be lost behind it.
    : QDialog(nullptr,
              Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint),
      m_request(request), m_limits(limits), m_pIcon(new QLabel), m_pBar(new QProgressBar) {
    setObjectName(QStringLiteral("CFetchWindow"));
    setWindowTitle(FetchText::c_strTitle);
    m_pIcon->hide();
    m_pTitle = MakeLabel(QStringLiteral("title"));
    m_pTitle->setText(FetchText::c_strFetching.arg(m_request.TemplateName));
    m_pBar->setObjectName(QStringLiteral("progress"));
    m_pBar->setAccessibleName(FetchText::c_strProgress);
    m_pBar->setTextVisible(false);
    m_pDetails = MakeLabel(QStringLiteral("details"));
    auto* pButtons = new QDialogButtonBox;
    m_pButton = pButtons->addButton(FetchText::c_strCancel, QDialogButtonBox::RejectRole);
    m_pButton->setObjectName(QStringLiteral("cancel"));
    // An Enter too many, meant for the question before, must not stop it.
    m_pButton->setAutoDefault(false);
    connect(pButtons, &QDialogButtonBox::rejected, this, &CFetchWindow::reject);

    auto* pLines = new QVBoxLayout;
    pLines->setSpacing(c_nSpacing);
    for (QWidget* pLine : std::initializer_list<QWidget*>{m_pTitle, m_pBar, m_pDetails})
        pLines->addWidget(pLine);
    auto* pBody = new QHBoxLayout;
    pBody->setSpacing(c_nMargin);
    pBody->addWidget(m_pIcon, 0, Qt::AlignTop);
    pBody->addLayout(pLines);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(c_nMargin, c_nMargin, c_nMargin, c_nMargin);
    pLayout->setSpacing(c_nMargin);
    pLayout->setSizeConstraint(QLayout::SetFixedSize);
    pLayout->addLayout(pBody);
    pLayout->addWidget(pButtons);

    auto* pTimer = new QTimer(this);
    connect(pTimer, &QTimer::timeout, this, &CFetchWindow::ShowProgress);
    pTimer->start(c_nRefreshMilliseconds);
    ShowProgress();
    m_worker = std::thread([this] {
        const FetchOutcome outcome = RunFetch(m_request, m_progress, m_limits);
        QMetaObject::invokeMethod(
            this, [this, outcome] { End(outcome); }, Qt::QueuedConnection);
    });
}

CFetchWindow::~CFetchWindow() {
    m_progress.bCancelled = true;
    m_worker.join();
}

void CFetchWindow::reject() {
    if (m_bEnded) {
        done(m_bInPlace ? Accepted : Rejected);
        return;
    }
    m_progress.bCancelled = true;
    ShowProgress();
}

void CFetchWindow::ShowProgress() {
    if (m_bEnded)
        return;
    const qint64 nTotal = m_progress.nTotal;
    const bool bKnown = m_progress.Stage == FetchProgress::EStage::Receiving && nTotal > 0;
    m_pBar->setRange(0, bKnown ? c_nBarSteps : 0);
    if (bKnown)
        m_pBar->setValue(static_cast<int>(double(m_progress.nReceived) / double(nTotal) * c_nBarSteps));
    m_pDetails->setText(DescribeProgress(m_progress));
    m_pButton->setEnabled(!m_progress.bCancelled && m_progress.Stage != FetchProgress::EStage::Replacing);
}

void CFetchWindow::End(const FetchOutcome& outcome) {
    m_bEnded = true;
    m_bInPlace = outcome.eEnd == FetchOutcome::EEnd::Done;
    m_pButton->setEnabled(true);
    m_pButton->setText(FetchText::c_strClose);
    if (m_bInPlace) {
        m_pBar->setRange(0, 1);
        m_pBar->setValue(1);
        m_pTitle->setText(outcome.strText);
        m_pDetails->setText(QStringLiteral(" "));
        QTimer::singleShot(c_nReadMilliseconds, this, &QDialog::accept);
    } else if (outcome.eEnd == FetchOutcome::EEnd::Cancelled) {
        QDialog::reject();
    } else {
        const int nSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
        m_pIcon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, this).pixmap(nSize));
        m_pIcon->show();
        m_pTitle->setText(outcome.strText);
        m_pBar->hide();
        m_pDetails->hide();
        m_pButton->setFocus();
        // Nor must an Enter too many take away what nobody has read yet.
        QTimer::singleShot(c_nReadMilliseconds, m_pButton, [this] { m_pButton->setDefault(true); });
    }
}
