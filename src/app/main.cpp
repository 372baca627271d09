#include <QApplication>
#include <QLabel>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QLabel placeholder(QStringLiteral("Brevio [Beta]"));
    placeholder.show();
    return app.exec();
}
