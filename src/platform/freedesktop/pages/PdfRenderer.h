// PDF documents, by a module that is loaded when the first one is opened.

#pragma once

#include "platform/PageRenderer.h"

class PdfRenderer final : public PageRenderer
{
public:
    std::unique_ptr<PagedDocument> open(const QString &path) const override;
};
