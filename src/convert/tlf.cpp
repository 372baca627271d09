#include "convert.h"

#include <QPainter>
#include <QPrinter>

void convert::readTlf(const QJsonObject& tlf) {
    Q_UNUSED(tlf)
}

void convert::printTlf(QPainter& painter, QPrinter& printer) {
    Q_UNUSED(painter)
    Q_UNUSED(printer)
}
