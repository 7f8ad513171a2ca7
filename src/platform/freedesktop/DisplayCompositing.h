// Asks an X server for its compositing manager. Wayland always blends.

#pragma once

#include "platform/Compositing.h"

class DisplayCompositing final : public Compositing
{
public:
    bool isActive() const override;
};
