#pragma once

#include <QFutureWatcher>
#include <QImage>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

/// Shows one picture whole and in its proportions: as large as fits, but never larger than it is, and sharp
/// on a fine screen. It is read beside the interface thread and no larger than it is shown, so that a picture
/// of any size neither stops the window nor fills the memory. Empty for a picture that can't be read.
class CPicturePane : public QWidget {
    Q_OBJECT
public:
    explicit CPicturePane(QWidget* pParent = nullptr);
    ~CPicturePane() override;

    /// A path in backslash form; empty for no picture. What was shown stays until the new picture is there,
    /// unless that takes long.
    void Load(const QString& strPath);
    /// The picture that is shown; null for none.
    const QPixmap& GetPicture() const { return m_picture; }

    QSize sizeHint() const override { return {400, 300}; }
    QSize minimumSizeHint() const override { return {160, 120}; }

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    void Ask();
    void Take();

    /// In backslash form.
    QString m_strPath;
    /// The room and the fineness for which the picture was asked for last; none when it was not.
    QSize m_room;
    qreal m_dRatio = 0;
    QPixmap m_picture;
    QFutureWatcher<QImage> m_reading;
    QTimer m_slow;
};
