// Shadow of the Windows header of the same name: the graph events that filters send.
#pragma once

#define EC_COMPLETE 0x01
#define EC_USERABORT 0x02
#define EC_ERRORABORT 0x03
#define EC_QUALITY_CHANGE 0x0B
