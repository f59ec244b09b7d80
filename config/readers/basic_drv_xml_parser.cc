#include "qr_config/config/readers/basic_drv_xml_parser.h"

BasicDrvXmlParser::~BasicDrvXmlParser() = default;
