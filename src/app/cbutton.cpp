// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/cbutton.h"

#include <QResizeEvent>
#include <QStyle>

namespace {

// A release this far from the pointer's position before the press, in
// either direction, is a drag rather than a click.
constexpr int dragThreshold = 20;

} // namespace

cButton::cButton(QWidget* parent)
    : QPushButton(parent), aspectFactor(1.0), lastPointerPos(-1, -1), pressed(false), state(false),
      heightFollowsWidth(false) {
    // Moves without a held button are what keeps lastPointerPos current.
    setMouseTracking(true);
}

cButton::~cButton() = default;

void cButton::mouseMoveEvent(QMouseEvent* event) {
    const QPoint global = mapToGlobal(event->localPos().toPoint());
    if (pressed)
        emit signalMouseEvent(QEvent::MouseMove, global);
    else
        lastPointerPos = global;
}

void cButton::mousePressEvent(QMouseEvent* event) {
    // The press is reported where the pointer was before it, which is also
    // the point the release is measured against.
    if (event->button() == Qt::LeftButton)
        emit signalMouseEvent(QEvent::MouseButtonPress, lastPointerPos);
    pressed = true;
    QAbstractButton::mousePressEvent(event);
}

void cButton::mouseReleaseEvent(QMouseEvent* event) {
    pressed = false;
    const QPoint global = mapToGlobal(event->localPos().toPoint());
    emit signalMouseEvent(QEvent::MouseButtonRelease, global);

    const QPoint moved = global - lastPointerPos;
    if (qAbs(moved.x()) < dragThreshold && qAbs(moved.y()) < dragThreshold) {
        QAbstractButton::mouseReleaseEvent(event);
        return;
    }
    // The base class still has to see the release so that the button pops
    // back up; only its click signals are swallowed.
    blockSignals(true);
    QAbstractButton::mouseReleaseEvent(event);
    blockSignals(false);
}

void cButton::resizeEvent(QResizeEvent* event) {
    event->accept();
    if (heightFollowsWidth) {
        const int height = static_cast<int>(width() * aspectFactor);
        setMinimumHeight(height);
        setMaximumHeight(height);
    } else {
        const int width = static_cast<int>(height() * aspectFactor);
        setMinimumWidth(width);
        setMaximumWidth(width);
    }
    updateGeometry();
}

void cButton::changeState(bool b) {
    if (b != state && b)
        emit stateOn();
    state = b;
    // Style-sheet rules that select on the "state" property are only
    // evaluated when the widget is polished.
    style()->unpolish(this);
    style()->polish(this);
    repaint();
}
