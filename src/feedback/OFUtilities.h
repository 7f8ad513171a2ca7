// The words of the feedback window: one context of translations for all of its classes.

#pragma once

#include <QCoreApplication>

class OFUtilities
{
    Q_DECLARE_TR_FUNCTIONS(OpenFeedback)

public:
    OFUtilities() = delete;
};
