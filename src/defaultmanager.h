// Start and end of the process-wide default manager.
#ifndef DEFAULTMANAGER_H
#define DEFAULTMANAGER_H

namespace vq {

// Makes a new manager of the current table the default; the one before stays with whoever has it.
void AttachDefaultManager();
// Deletes the default manager, if there is one, and leaves none until the next attach.
void DetachDefaultManager();

}  // namespace vq

#endif
