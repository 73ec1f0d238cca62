var g_arrOutlineName = new Array();
g_arrOutlineName[ g_arrOutlineName.length ] = "µÚÒ»Ò³ \"ÎÊ\"";
