#pragma once

#include "Tools/Server/Server.h"
#include "Tools/Server/StreamServer.h"

#include <memory>

namespace quen::tools::server {

class MethodSet;
using MethodsPtr = std::shared_ptr<MethodSet>;

/// Everything that the server can do, added to it; must go before the server, and after its end.
MethodsPtr addMethods(Server& server, MessageSink& sink, QuenSourceControlProtocolPtr provider,
                      const ServerOptions& options);

} // namespace quen::tools::server
