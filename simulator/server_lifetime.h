// Keeps the server process running while a client holds one of its objects or a server lock.
#pragma once

namespace camsim {

// What the server loop does when the last object or lock goes away; set once, before the
// class objects are registered.
void SetLastReleaseAction(void (*action)());

void AcquireServerReference();
void ReleaseServerReference();

// True once any object or lock was taken since the process started.
bool ServerWasUsed();

// One server reference for the life of an object.
class ServerReference {
public:
    ServerReference() { AcquireServerReference(); }
    ~ServerReference() { ReleaseServerReference(); }
    ServerReference(const ServerReference&) = delete;
    ServerReference& operator=(const ServerReference&) = delete;
};

} // namespace camsim
