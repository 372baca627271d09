#include "convert.h"

#include <QPainter>
#include <QPrinter>

void convert::readDisplay(const QJsonObject& display) {
    Q_UNUSED(display)
}

void convert::printDisplay(QPainter& painter, QPrinter& printer) {
    Q_UNUSED(painter)
    Q_UNUSED(printer)
}
