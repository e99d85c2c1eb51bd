# SPDX-License-Identifier: MIT
"""The writers of the modules that the C header determines."""
