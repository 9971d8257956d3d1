// SPDX-License-Identifier: MIT
// A group box, drawn as templates expect it: the frame goes through the middle of its title,
// so that what stands below the title's line is clear of both.  What it holds are its siblings.
#pragma once

#include <QGroupBox>
#include <functional>

namespace Platform {

class GroupFrame : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

    // The key of the title was pressed.
    std::function<void()> onKey;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

} // namespace Platform
