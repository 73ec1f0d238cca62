#pragma once

#include <QPixmap>
#include <QWidget>

/// A slide as large as there is room, and where the mouse is on it.
class CSlidePicture : public QWidget {
    Q_OBJECT
public:
    explicit CSlidePicture(QWidget* pParent = nullptr);

    /// A native path.
    void Show(const QString& strPicture);
    /// Width by height.
    double GetRatio() const;
    QSize sizeHint() const override { return {720, 540}; }

Q_SIGNALS:
    /// In thousandths of the slide's width and height.
    void PointerMoved(int nX, int nY);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;

private:
    QRect Place() const;

    QPixmap m_picture;
};
