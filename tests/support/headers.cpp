// SPDX-License-Identifier: MIT
// The precompiled headers of the suites belong to the target of this file.
