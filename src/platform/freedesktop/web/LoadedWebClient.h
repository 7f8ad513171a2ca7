// Requests by Qt's network classes, which few runs need: they are loaded with the first request.

#pragma once

#include "platform/WebClient.h"

class LoadedWebClient final : public WebClient
{
public:
    std::unique_ptr<WebExchange> send(const WebRequest &request, Receiver receiver) const override;
};
