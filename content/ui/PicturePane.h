#pragma once

#include <QPixmap>
#include <QWidget>

/// Shows one picture as large as fits, keeping its proportions, sharp on any screen. Empty for a picture that
/// can't be read.
class CPicturePane : public QWidget {
    Q_OBJECT
public:
    explicit CPicturePane(QWidget* pParent = nullptr) : QWidget(pParent) {}

    /// A path in backslash form.
    void Load(const QString& strPath);
    bool IsEmpty() const { return m_picture.isNull(); }

    QSize sizeHint() const override { return {320, 240}; }
    QSize minimumSizeHint() const override { return {160, 120}; }

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    QPixmap m_picture;
    /// The picture at the size of the last painting, in device pixels.
    QPixmap m_scaled;
};
