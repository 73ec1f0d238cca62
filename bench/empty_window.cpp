// The least that a window of this toolkit costs: the floor under the program's own start.
#include <QApplication>
#include <QMainWindow>
#include <QPainter>

class CColours : public QWidget {
protected:
    // Enough colours for the probe to see that the window is painted.
    void paintEvent(QPaintEvent* /*pEvent*/) override {
        QPainter painter(this);
        for (int n = 0; n < 64; ++n)
            painter.fillRect(n * width() / 64, 0, width() / 64 + 1, height(),
                             QColor(n * 4, 255 - n * 4, 128));
    }
};

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.setCentralWidget(new CColours);
    window.resize(1024, 700);
    window.show();
    return QApplication::exec();
}
