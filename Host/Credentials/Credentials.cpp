#include "Host/Credentials/Credentials.h"

#include "Host/Credentials/CredentialKeeper.h"

#include <utility>

namespace quen {

Credentials::Credentials(CredentialSourcePtr source, std::shared_ptr<CredentialKeeper> keeper,
                         bool mayAsk)
    : source_(std::move(source)), keeper_(std::move(keeper)), mayAsk_(mayAsk),
      act_(keeper_->number()) {}

Credentials::~Credentials() = default;

CredentialsPtr Credentials::make(CredentialSourcePtr source) {
    return CredentialsPtr(
        new Credentials(std::move(source), std::make_shared<CredentialKeeper>(), true));
}

CredentialsPtr Credentials::forPerson() const {
    return CredentialsPtr(new Credentials(source_, keeper_, true));
}

CredentialsPtr Credentials::forBackground() const {
    return CredentialsPtr(new Credentials(source_, keeper_, false));
}

} // namespace quen
