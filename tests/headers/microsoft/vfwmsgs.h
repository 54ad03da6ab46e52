// What is needed of it is in windows.h.
#pragma once
