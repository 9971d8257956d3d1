// SPDX-License-Identifier: MIT
// Here once, because these two make most of a mock object's code.
#include "client/manager/MockBackend.h"

MockBackend::MockBackend() = default;
MockBackend::~MockBackend() = default;
