// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_CBUTTON_H
#define BREVIO_CBUTTON_H

#include <QEvent>
#include <QMouseEvent>
#include <QPoint>
#include <QPushButton>

class QResizeEvent;

// The picture button of every control in the window. It keeps a fixed
// aspect ratio so that square artwork stays square in rows of any height,
// and it does not count a press that was dragged away as a click.
class cButton : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(bool state MEMBER state WRITE changeState)

public:
    explicit cButton(QWidget* parent = nullptr);
    ~cButton() override;

    // Width divided by height (or height by width, see heightFollowsWidth),
    // pinned again on every resize.
    double aspectFactor;

private:
    // Where the pointer was last seen while no mouse button was held here:
    // the reference point that decides whether a release is still a click.
    QPoint lastPointerPos;
    bool pressed;
    bool state;

public:
    // false: the width follows the height; true: the other way round.
    bool heightFollowsWidth;

signals:
    // The enumeration is named through the mouse event on purpose: that is
    // the name string-based connections have to use.
    void signalMouseEvent(QMouseEvent::Type t, QPoint p);
    void stateOn();

public slots:
    void changeState(bool b);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
};

#endif
