// Requests by the module that the program alone loads; a test links it.

#pragma once

#include "platform/WebClient.h"

extern "C" WebExchange *ortuSendRequest(const WebRequest &request, WebClient::Receiver &receiver);

class LinkedWebClient final : public WebClient
{
public:
    std::unique_ptr<WebExchange> send(const WebRequest &request, Receiver receiver) const override
    {
        return std::unique_ptr<WebExchange>(ortuSendRequest(request, receiver));
    }
};
