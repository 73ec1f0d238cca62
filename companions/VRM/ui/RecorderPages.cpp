#include "companions/VRM/Texts.h"
#include "companions/VRM/ui/LiveView.h"
#include "companions/VRM/ui/RecorderWindow.h"
#include "companions/VRM/ui/SlidePicture.h"
#include "platform/ui/DialogParts.h"
#include "platform/ui/MediaPlayer.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

using DialogParts::Named;
using EKind = SFilmSource::EKind;

namespace {

constexpr int c_nFieldWidth = 380;
constexpr int c_nSideWidth = 240;
constexpr int c_nFilmHeight = 180;

QString NameOf(const SFilmSource& source) {
    switch (source.Kind) {
    case EKind::Screen:
        return RecorderText::c_strScreen;
    case EKind::Camera:
        return RecorderText::c_strCamera.arg(source.strName, source.strPlace);
    case EKind::Microphone:
        return RecorderText::c_strMicrophone;
    case EKind::File:
        break;
    }
    return RecorderText::c_strExistingFilm;
}

} // namespace

QLineEdit* CRecorderWindow::AddFile(QGridLayout& grid, int nRow, const QString& strLabel, const char* szName,
                                    const QString& strButton, const std::function<QString()>& pick) {
    auto* pField = Named(new QLineEdit(this), szName, strLabel);
    pField->setMinimumWidth(c_nFieldWidth);
    auto* pBrowse = new QPushButton(strButton, this);
    const QByteArray browseName = QByteArray(szName) + "Browse";
    DialogParts::SetNames(pBrowse, browseName.constData(), DialogParts::NameOf(strLabel) + strButton);
    pBrowse->setAutoDefault(false);
    grid.addWidget(DialogParts::LabelFor(strLabel, pField), nRow, 0);
    grid.addWidget(pField, nRow, 1);
    grid.addWidget(pBrowse, nRow, 2);
    connect(pBrowse, &QPushButton::clicked, this, [pField, pick] {
        if (const QString strPath = pick(); !strPath.isEmpty())
            pField->setText(strPath);
    });
    return pField;
}

QWidget* CRecorderWindow::MakeSetupPage() {
    auto* pPage = new QWidget(this);
    auto* pGrid = new QGridLayout;
    const auto pickFile = [this](const QString& strTitle, const QString& strFilter) {
        return [this, strTitle, strFilter] {
            return QFileDialog::getOpenFileName(this, strTitle, {}, strFilter);
        };
    };
    m_pPresentation =
        AddFile(*pGrid, 0, RecorderText::c_strPresentation, "presentation", RecorderText::c_strBrowse,
                pickFile(RecorderText::c_strPickPresentation, RecorderText::c_strPresentations));
    m_pSource = Named(new QComboBox(this), "source", RecorderText::c_strSource);
    for (const SFilmSource& source : m_sources)
        m_pSource->addItem(NameOf(source));
    pGrid->addWidget(DialogParts::LabelFor(RecorderText::c_strSource, m_pSource), 1, 0);
    pGrid->addWidget(m_pSource, 1, 1, 1, 2);
    m_pFilmFile = AddFile(*pGrid, 2, RecorderText::c_strFilm, "film", RecorderText::c_strBrowseFilm,
                          pickFile(RecorderText::c_strPickFilm, RecorderText::c_strFilms));
    m_pSound = Named(new QCheckBox(RecorderText::c_strSound, this), "sound", RecorderText::c_strSound);
    pGrid->addWidget(m_pSound, 3, 1, 1, 2);
    m_pOldTimes =
        Named(new QCheckBox(RecorderText::c_strOldTimes, this), "oldTimes", RecorderText::c_strOldTimes);
    pGrid->addWidget(m_pOldTimes, 4, 1, 1, 2);
    m_pPreview = new CLiveView("preview", this);
    pGrid->addWidget(new QLabel(RecorderText::c_strPreview, this), 5, 0, Qt::AlignTop);
    pGrid->addWidget(m_pPreview, 5, 1, 1, 2, Qt::AlignLeft);
    connect(m_pSound, &QCheckBox::clicked, this, [this](bool bOn) {
        m_bWantsSound = bOn;
        ShowSource();
    });
    connect(m_pOldTimes, &QCheckBox::clicked, this, &CRecorderWindow::ShowSource);
    connect(m_pFilmFile, &QLineEdit::textChanged, this, &CRecorderWindow::ShowSource);
    connect(m_pSource, &QComboBox::currentIndexChanged, this, &CRecorderWindow::ShowSource);

    m_pHint = new QLabel(RecorderText::c_strHint, this);
    m_pHint->setObjectName(QStringLiteral("hint"));
    m_pHint->setWordWrap(true);
    m_pStart = Named(new QPushButton(RecorderText::c_strStart, this), "start", RecorderText::c_strStart);
    auto* pCancel =
        Named(new QPushButton(RecorderText::c_strCancel, this), "cancel", RecorderText::c_strCancel);
    pCancel->setAutoDefault(false);
    connect(m_pStart, &QPushButton::clicked, this, &CRecorderWindow::Begin);
    connect(pCancel, &QPushButton::clicked, this, &CRecorderWindow::reject);
    auto* pButtons = new QHBoxLayout;
    pButtons->addStretch(1);
    pButtons->addWidget(m_pStart);
    pButtons->addWidget(pCancel);
    auto* pLayout = new QVBoxLayout(pPage);
    pLayout->addLayout(pGrid);
    pLayout->addWidget(m_pHint);
    pLayout->addStretch(1);
    pLayout->addLayout(pButtons);
    return pPage;
}

/// What is filmed, how loud it is, and the outline.
QLayout* CRecorderWindow::MakeSide() {
    m_pPlayer = Named(new CMediaPlayer(this), "player", RecorderText::c_strExistingFilm);
    m_pPlayer->setFixedSize(c_nSideWidth, c_nFilmHeight);
    m_pOutline = Named(new QListWidget(this), "outline", RecorderText::c_strOutline);
    m_pOutline->setFixedWidth(c_nSideWidth);
    m_pOutline->setUniformItemSizes(true);
    m_pLive = new CLiveView("live", this);
    auto* pSide = new QVBoxLayout;
    pSide->addWidget(m_pPlayer);
    pSide->addWidget(m_pLive);
    pSide->addWidget(DialogParts::LabelFor(RecorderText::c_strOutline, m_pOutline));
    pSide->addWidget(m_pOutline, 1);
    return pSide;
}

QWidget* CRecorderWindow::MakeRecordPage() {
    auto* pPage = new QWidget(this);
    QLayout* pSide = MakeSide();
    m_pSlide = Named(new CSlidePicture(this), "slide", RecorderText::c_strOutline);
    m_pTime = Named(new QLabel(this), "time", RecorderText::c_strTitle);
    m_pPause = Named(new QPushButton(RecorderText::c_strPause, this), "pause", RecorderText::c_strPause);
    m_pPrevious =
        Named(new QPushButton(RecorderText::c_strPrevious, this), "previous", RecorderText::c_strPrevious);
    m_pNext = Named(new QPushButton(RecorderText::c_strNext, this), "next", RecorderText::c_strNext);
    m_pStop = Named(new QPushButton(RecorderText::c_strStop, this), "stop", RecorderText::c_strStop);
    // Enter turns the page, and never ends a lecture.
    m_pPause->setAutoDefault(false);
    m_pPrevious->setAutoDefault(false);
    m_pStop->setAutoDefault(false);
    connect(m_pPause, &QPushButton::clicked, this, &CRecorderWindow::TogglePause);
    connect(m_pPrevious, &QPushButton::clicked, this, [this] { Turn(m_nSlide - 1); });
    connect(m_pNext, &QPushButton::clicked, this, [this] { Turn(m_nSlide + 1); });
    connect(m_pStop, &QPushButton::clicked, this, &CRecorderWindow::AskFinish);
    connect(m_pOutline, &QListWidget::currentRowChanged, this, &CRecorderWindow::Turn);
    connect(m_pSlide, &CSlidePicture::PointerMoved, this, [this](int nX, int nY) {
        const qint64 nNow = FilmNow();
        if (m_stage == EStage::Recording && m_times && nNow > 0 && m_times->MovePointer(nX, nY, nNow))
            m_log.MovePointer(nX, nY, nNow);
    });
    // The arrows would else lead to the button that ends the lecture.
    for (const auto& [key, nStep] :
         {std::pair(Qt::Key_PageUp, -1), std::pair(Qt::Key_Left, -1), std::pair(Qt::Key_Up, -1),
          std::pair(Qt::Key_PageDown, 1), std::pair(Qt::Key_Right, 1), std::pair(Qt::Key_Down, 1)}) {
        auto* pKey = new QShortcut(QKeySequence(key), pPage);
        connect(pKey, &QShortcut::activated, this, [this, nStep = nStep] { Turn(m_nSlide + nStep); });
    }

    auto* pBody = new QHBoxLayout;
    pBody->addLayout(pSide);
    pBody->addWidget(m_pSlide, 1);
    auto* pFoot = new QHBoxLayout;
    pFoot->addWidget(m_pTime, 1);
    for (QPushButton* pButton : {m_pPause, m_pPrevious, m_pNext, m_pStop})
        pFoot->addWidget(pButton);
    auto* pLayout = new QVBoxLayout(pPage);
    pLayout->addLayout(pBody, 1);
    pLayout->addLayout(pFoot);
    return pPage;
}

QWidget* CRecorderWindow::MakeWaitPage() {
    auto* pPage = new QWidget(this);
    m_pWaitIcon = new QLabel(this);
    m_pWait = new QLabel(this);
    m_pWait->setObjectName(QStringLiteral("wait"));
    m_pWait->setTextFormat(Qt::PlainText);
    m_pWait->setWordWrap(true);
    m_pBar = Named(new QProgressBar(this), "progress", RecorderText::c_strWriting);
    m_pBar->setTextVisible(false);
    m_pEnd = Named(new QPushButton(RecorderText::c_strCancel, this), "end", RecorderText::c_strCancel);
    m_pEnd->setAutoDefault(false);
    connect(m_pEnd, &QPushButton::clicked, this, [this] { m_stage == EStage::Done ? accept() : reject(); });
    auto* pLayout = new QVBoxLayout(pPage);
    pLayout->addStretch(1);
    auto* pText = new QHBoxLayout;
    pText->addWidget(m_pWaitIcon);
    pText->addWidget(m_pWait, 1);
    pLayout->addLayout(pText);
    pLayout->addWidget(m_pBar);
    pLayout->addStretch(1);
    pLayout->addWidget(m_pEnd, 0, Qt::AlignRight);
    return pPage;
}
